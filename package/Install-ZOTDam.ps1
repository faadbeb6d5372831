<#
.SYNOPSIS
Installs the ZOTDam library of this package in the folders of QUEN Power Management, or removes it.

.DESCRIPTION
Copies ZOTDam.dll, zotdamctl.exe, the base catalogue (data\ZOTBase.xml), the defaults (ZOTDefault.xml) and the string
tables with their language copies to "%ProgramFiles%\Orlo\QUEN Power Management", and creates the folder of the user
settings, "%ProgramData%\Orlo Corporation\QUEN Power Management".

The user settings (ZOTPowercfg.xml) are never written or removed. Defaults that differ from those of the package were
written on this machine. They are also kept, unless -Force is specified. A warning names each file that is kept.

Requires administrator rights, except with -WhatIf. Close all programs that use the library first. The library is the
first file to be replaced or removed, so nothing is changed while it is in use.

.PARAMETER Uninstall
Removes the installed files, and the folders that are empty afterwards.

.PARAMETER Force
Also replaces or removes defaults that were written on this machine.

.EXAMPLE
.\Install-ZOTDam.ps1 -WhatIf

Shows the actions without performing them.

.EXAMPLE
.\Install-ZOTDam.ps1

Installs or updates the library.

.EXAMPLE
.\Install-ZOTDam.ps1 -Uninstall -Force

Removes everything except the user settings.
#>
[CmdletBinding(SupportsShouldProcess = $true)]
param(
    [switch] $Uninstall,
    [switch] $Force
)

Set-StrictMode -Version Latest
$ErrorActionPreference = 'Stop'

# In a 32-bit PowerShell, "ProgramFiles" is the folder of the 32-bit programs.
$programFiles = if ($env:ProgramW6432) { $env:ProgramW6432 } else { $env:ProgramFiles }
$installation = Join-Path $programFiles 'Orlo\QUEN Power Management'
$userSettings = Join-Path $env:ProgramData 'Orlo Corporation\QUEN Power Management'
$defaults = Join-Path $installation 'ZOTDefault.xml'

# Returns each file of the package with its target path, the library first.
function Get-ShippedFile {
    foreach ($name in 'ZOTDam.dll', 'zotdamctl.exe') {
        $source = Join-Path $PSScriptRoot "bin\$name"
        [pscustomobject]@{ Source = $source; Target = Join-Path $installation $name }
    }
    $samples = Get-Item -LiteralPath (Join-Path $PSScriptRoot 'samples\Program Files\Orlo\QUEN Power Management')
    foreach ($file in Get-ChildItem -LiteralPath $samples.FullName -Recurse -File) {
        $name = $file.FullName.Substring($samples.FullName.Length + 1)
        [pscustomobject]@{ Source = $file.FullName; Target = Join-Path $installation $name }
    }
}

# Returns whether the installed file was written on this machine and must be kept.
function Test-Kept($file) {
    if ($Force -or $file.Target -ne $defaults -or -not (Test-Path -LiteralPath $defaults)) {
        return $false
    }
    return (Get-FileHash -LiteralPath $file.Source).Hash -ne (Get-FileHash -LiteralPath $defaults).Hash
}

function Write-KeptFile($path) {
    Write-Warning "Kept: $path"
}

function New-Folder($path) {
    if (-not (Test-Path -LiteralPath $path)) {
        New-Item -ItemType Directory -Path $path | Out-Null
    }
}

function Remove-EmptyFolder($path) {
    if ((Test-Path -LiteralPath $path) -and @(Get-ChildItem -LiteralPath $path -Force).Count -eq 0) {
        Remove-Item -LiteralPath $path
    }
}

function Install-File($file) {
    New-Folder (Split-Path -Parent $file.Target)
    Copy-Item -LiteralPath $file.Source -Destination $file.Target -Force
}

function Uninstall-File($file) {
    if (Test-Path -LiteralPath $file.Target) {
        Remove-Item -LiteralPath $file.Target -Force
    }
}

# Returns the folders of the installation, the innermost first.
function Get-InstallationFolder($files) {
    $files | ForEach-Object { Split-Path -Parent $_.Target } | Sort-Object -Unique |
        Sort-Object -Property Length -Descending
    Split-Path -Parent $installation
}

$principal = [Security.Principal.WindowsPrincipal] [Security.Principal.WindowsIdentity]::GetCurrent()
if (-not $WhatIfPreference -and -not $principal.IsInRole([Security.Principal.WindowsBuiltInRole]::Administrator)) {
    throw 'The folders of the installation can be changed by an administrator only.'
}

$files = @(Get-ShippedFile)
foreach ($file in $files) {
    if (Test-Kept $file) {
        Write-KeptFile $file.Target
    } elseif ($Uninstall) {
        Uninstall-File $file
    } else {
        Install-File $file
    }
}

if ($Uninstall) {
    foreach ($folder in Get-InstallationFolder $files) {
        Remove-EmptyFolder $folder
    }
    Remove-EmptyFolder $userSettings
    Remove-EmptyFolder (Split-Path -Parent $userSettings)
} else {
    New-Folder $userSettings
}

$powercfg = Join-Path $userSettings 'ZOTPowercfg.xml'
if (Test-Path -LiteralPath $powercfg) {
    Write-KeptFile $powercfg
}
