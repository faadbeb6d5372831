// The commands of zotdamctl, grouped by subject.
#pragma once

#include "commands/CommandSet.h"

namespace ZOTDam::Client {

void AddCatalogueCommands(CommandSet& commands);
void AddBaseCommands(CommandSet& commands);
void AddParameterCommands(CommandSet& commands);
void AddSetCommands(CommandSet& commands);
void AddResetCommands(CommandSet& commands);
void AddSchemeCommands(CommandSet& commands);
void AddDiffCommand(CommandSet& commands);
void AddSettingCommands(CommandSet& commands);
void AddTransferCommands(CommandSet& commands);
void AddDoctorCommand(CommandSet& commands);
void AddReportCommand(CommandSet& commands);

}  // namespace ZOTDam::Client
