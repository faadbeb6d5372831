// The commands of zotdamctl, grouped by subject.
#pragma once

#include "commands/CommandSet.h"

namespace ZOTDam::Client {

void AddCatalogueCommands(CommandSet& commands);
void AddBaseCommands(CommandSet& commands);
void AddParameterCommands(CommandSet& commands);
void AddSchemeCommands(CommandSet& commands);
void AddSettingCommands(CommandSet& commands);
void AddDoctorCommand(CommandSet& commands);

}  // namespace ZOTDam::Client
