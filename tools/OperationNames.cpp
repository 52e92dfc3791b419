// SPDX-License-Identifier: Apache-2.0
#include "OperationNames.h"

#include <algorithm>
#include <iterator>

namespace platen::tool {

namespace {

struct Operation {
  std::int32_t id;
  std::string_view name;
};

constexpr Operation kOperations[] = {
    {0x0013, "Set-Printer-Attributes"},
    {0x0015, "Get-Printer-Supported-Values"},
    {0x001E, "Get-Resource-Attributes"},
    {0x0020, "Get-Resources"},
    {0x0024, "Pause-Printer-After-Current-Job"},
    {0x0025, "Hold-New-Jobs"},
    {0x0026, "Release-Held-New-Jobs"},
    {0x0027, "Deactivate-Printer"},
    {0x0028, "Activate-Printer"},
    {0x0029, "Restart-Printer"},
    {0x002A, "Shutdown-Printer"},
    {0x002B, "Startup-Printer"},
    {0x002C, "Reprocess-Job"},
    {0x002D, "Cancel-Current-Job"},
    {0x002E, "Suspend-Current-Job"},
    {0x002F, "Resume-Job"},
    {0x0030, "Promote-Job"},
    {0x0031, "Schedule-Job-After"},
    {0x0033, "Cancel-Document"},
    {0x0034, "Get-Document-Attributes"},
    {0x0035, "Get-Documents"},
    {0x0036, "Delete-Document"},
    {0x0037, "Set-Document-Attributes"},
    {0x0038, "Cancel-Jobs"},
    {0x0039, "Cancel-My-Jobs"},
    {0x003A, "Resubmit-Job"},
    {0x003B, "Close-Job"},
    {0x003C, "Identify-Printer"},
    {0x003D, "Validate-Document"},
    {0x003E, "Add-Document-Images"},
    {0x003F, "Acknowledge-Document"},
    {0x0040, "Acknowledge-Identify-Printer"},
    {0x0041, "Acknowledge-Job"},
    {0x0042, "Fetch-Document"},
    {0x0043, "Fetch-Job"},
    {0x0044, "Get-Output-Device-Attributes"},
    {0x0045, "Update-Active-Jobs"},
    {0x0046, "Deregister-Output-Device"},
    {0x0047, "Update-Document-Status"},
    {0x0048, "Update-Job-Status"},
    {0x0049, "Update-Output-Device-Attributes"},
    {0x004A, "Get-Next-Document-Data"},
    {0x004B, "Allocate-Printer-Resources"},
    {0x004C, "Create-Printer"},
    {0x004D, "Deallocate-Printer-Resources"},
    {0x004E, "Delete-Printer"},
    {0x004F, "Get-Printers"},
    {0x0050, "Shutdown-One-Printer"},
    {0x0051, "Startup-One-Printer"},
    {0x0052, "Cancel-Resource"},
    {0x0053, "Create-Resource"},
    {0x0054, "Install-Resource"},
    {0x0055, "Send-Resource-Data"},
    {0x0056, "Set-Resource-Attributes"},
    {0x0057, "Create-Resource-Subscriptions"},
    {0x0058, "Create-System-Subscriptions"},
    {0x0059, "Disable-All-Printers"},
    {0x005A, "Enable-All-Printers"},
    {0x005B, "Get-System-Attributes"},
    {0x005C, "Get-System-Supported-Values"},
    {0x005D, "Pause-All-Printers"},
    {0x005E, "Pause-All-Printers-After-Current-Job"},
    {0x005F, "Register-Output-Device"},
    {0x0060, "Restart-System"},
    {0x0061, "Resume-All-Printers"},
    {0x0062, "Set-System-Attributes"},
    {0x0063, "Shutdown-All-Printers"},
    {0x0064, "Startup-All-Printers"},
    {0x0065, "Get-Printer-Resources"},
    {0x0066, "Get-User-Printer-Attributes"},
    {0x0067, "Restart-One-Printer"},
    {0x4027, "CUPS-Get-Document"},
    {0x4028, "CUPS-Create-Local-Printer"},
};

}  // namespace

std::string_view registeredOperationName(std::int32_t operationId) noexcept {
  const auto* found = std::find_if(std::begin(kOperations), std::end(kOperations),
                                   [&](const Operation& each) { return each.id == operationId; });
  return found == std::end(kOperations) ? std::string_view() : found->name;
}

}  // namespace platen::tool
