-- Completes the database that wixl makes from ZOTDam.wxs. msi.py replaces the words in braces.

-- Versions up to this one are removed before the installation (1: their selected features are kept, 512: inclusive).
INSERT INTO `Upgrade` (`UpgradeCode`, `VersionMin`, `VersionMax`, `Language`, `Attributes`, `Remove`, `ActionProperty`)
    VALUES ('{upgrade_code}', '', '{version}', '', 513, '', 'OLDERVERSION');
UPDATE `Property` SET `Value` = 'NEWERVERSION;OLDERVERSION' WHERE `Property` = 'SecureCustomProperties';

-- The runtime cannot be deselected (16).
UPDATE `Feature` SET `Attributes` = 16 WHERE `Feature` = 'runtime';

-- The actions set properties (51). wixl adds the flag for deferred actions.
UPDATE `CustomAction` SET `Type` = 51;

-- The settings folder: full access for the system and for administrators, "Modify" for users.
CREATE TABLE `MsiLockPermissionsEx` (`MsiLockPermissionsEx` CHAR(72) NOT NULL, `LockObject` CHAR(72) NOT NULL,
    `Table` CHAR(32) NOT NULL, `SDDLText` CHAR(0) NOT NULL, `Condition` CHAR(255) PRIMARY KEY `MsiLockPermissionsEx`);
INSERT INTO `MsiLockPermissionsEx` (`MsiLockPermissionsEx`, `LockObject`, `Table`, `SDDLText`)
    VALUES ('SettingsFolder', 'SettingsFolder', 'CreateFolder',
    'D:PAI(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;0x1301bf;;;BU)');
