#pragma once

#include "qal/types.h"

/// Every identifier of the contract, written in its registry form.
namespace qal {

/// The identifier that "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" stands for; a malformed literal does not
/// compile.
constexpr Guid MakeGuid(const char (&text)[39]) {
  const auto digit = [&text](int at) -> unsigned {
    const char c = text[at];
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
    throw "not a hexadecimal digit";
  };
  const auto number = [&digit](int at, int length) {
    std::uint32_t value = 0;
    for (int i = 0; i < length; ++i) value = value * 16 + digit(at + i);
    return value;
  };
  if (text[0] != '{' || text[9] != '-' || text[14] != '-' || text[19] != '-' || text[24] != '-' ||
      text[37] != '}') {
    throw "not the registry form";
  }
  Guid guid;
  guid.data1 = number(1, 8);
  guid.data2 = static_cast<std::uint16_t>(number(10, 4));
  guid.data3 = static_cast<std::uint16_t>(number(15, 4));
  for (int i = 0; i < 8; ++i)
    guid.data4[i] = static_cast<std::uint8_t>(number(i < 2 ? 20 + 2 * i : 21 + 2 * i, 2));
  return guid;
}

/// Class of the coverage component.
inline constexpr Guid kClassId = MakeGuid("{BBE21080-34D9-11D5-B7CE-00E029352378}");

namespace iid {

inline constexpr Guid kUnknown = MakeGuid("{00000000-0000-0000-C000-000000000046}");

// What the component answers or registers.
inline constexpr Guid kRegistryClient = MakeGuid("{A8495740-DE13-11D3-8AF5-00AA0026624A}");
inline constexpr Guid kComponent2 = MakeGuid("{A8495747-DE13-11D3-8AF5-00AA0026624A}");
inline constexpr Guid kColumnClient = MakeGuid("{EFC5B7E3-AB99-4175-B2F4-DC7681A620A8}");
inline constexpr Guid kTestImageSource = MakeGuid("{417F1D27-B5E8-498F-9CDC-19F84900B111}");
inline constexpr Guid kDebugActivitySink = MakeGuid("{F34E8D5C-3FC5-4EAF-8BB7-7C0C37D5AAA0}");
inline constexpr Guid kWorkSpaceClient = MakeGuid("{56836F34-D734-11D4-BE83-00C04F794B59}");
inline constexpr Guid kWorkSpaceClient2 = MakeGuid("{453547D2-008B-44A3-BDF4-48B86CBCFB44}");
inline constexpr Guid kFormatViewClient2 = MakeGuid("{F522876D-2102-4D08-BF62-3DC10C23575B}");
/// Under this one the format view client is registered with Advise; it is not answered by QueryInterface.
inline constexpr Guid kFormatViewSink = MakeGuid("{F4B80273-DE68-4433-B25A-774FB15B2676}");
inline constexpr Guid kCoverageAutomation = MakeGuid("{034370CE-79FB-470B-A6E7-2A0BFEAA4C58}");
inline constexpr Guid kCmdClient = MakeGuid("{0CEE2458-E2FC-45C4-AD14-9338AC377F2B}");
inline constexpr Guid kCmdClient2 = MakeGuid("{76FDAC8B-D0C3-4365-BB64-56412E74A430}");
inline constexpr Guid kCoverageTestClient = MakeGuid("{7E75765A-6BE4-4EC5-99B1-DB0B95E0E40B}");
inline constexpr Guid kTestClientName = MakeGuid("{06BC04ED-EF77-4D34-877E-B23BC5F0774F}");
inline constexpr Guid kTestClientContext = MakeGuid("{703C74EA-9CFB-4045-AB43-083596F2B5DA}");

// Coverage of the target.
inline constexpr Guid kPathCoverage = MakeGuid("{A428AAA4-ECBF-4699-91F6-C94EC197D854}");
inline constexpr Guid kCountCoverage = MakeGuid("{928CA700-2DCB-11D5-A5D8-0000E2257DCD}");
inline constexpr Guid kTraceStart = MakeGuid("{BFA8B2C0-E306-11D4-8BBC-444553540000}");

// Source, symbols and code.
inline constexpr Guid kSource = MakeGuid("{DD4B2D8A-6AF5-45DF-8307-B9F67B48755B}");
inline constexpr Guid kSymbolTable = MakeGuid("{2597F6A3-AED0-45D3-99AC-A9E98467BBBC}");
inline constexpr Guid kAddressText = MakeGuid("{AFFBE6B9-BD14-4950-BBD0-1EC28CC48800}");
inline constexpr Guid kTargetInformation = MakeGuid("{A8495742-DE13-11D3-8AF5-00AA0026624A}");
inline constexpr Guid kMemory = MakeGuid("{A849574A-DE13-11D3-8AF5-00AA0026624A}");
inline constexpr Guid kExpression = MakeGuid("{A8495743-DE13-11D3-8AF5-00AA0026624A}");
inline constexpr Guid kAddressLimits = MakeGuid("{8B1C7AA0-2E92-11D5-A5D8-0000E2257DCD}");
/// The editor service as the statistics pane asks for it.
inline constexpr Guid kEditor = MakeGuid("{D686DDAD-CA43-456F-8619-14939B95D276}");
/// The editor service as the data pane asks for it; the same operation stands in slot 82.
inline constexpr Guid kDataPaneEditor = MakeGuid("{654BBB46-8848-4D7A-BD93-0B77D291FF3D}");
inline constexpr Guid kColumnService = MakeGuid("{2F867FB8-AE23-43A5-906B-4E1426ADA6B9}");

// The IDE's own state.
/// Asked with QueryInterface of the host object, not with GetService.
inline constexpr Guid kSessionState = MakeGuid("{80218733-0B17-4A5D-B971-5F783F93036C}");
inline constexpr Guid kProject = MakeGuid("{D2D08F5A-4600-4590-B4C0-0695720D9AE5}");
inline constexpr Guid kWorkspace = MakeGuid("{A538CBA2-D5B7-11D4-BE81-00C04F794B59}");
inline constexpr Guid kCustomPlaceholders = MakeGuid("{8403CE5C-6C18-4EF5-89DB-F9E6205C0A3A}");
inline constexpr Guid kModules = MakeGuid("{327F61F2-750D-11D5-80D8-00C04F68EAD7}");
inline constexpr Guid kSettings = MakeGuid("{374027C8-E512-4DB2-8531-38B08B323CF9}");
inline constexpr Guid kMessageOptions = MakeGuid("{A8495753-DE13-11D3-8AF5-00AA0026624A}");
inline constexpr Guid kMacroRecorder = MakeGuid("{F0FC2120-D4A5-4A2D-AC02-B56864625CEA}");
/// The error-text service; the component answers the same identifier with its IQRegistryClient.
inline constexpr Guid kErrorText = MakeGuid("{90EFE761-0B7C-11D6-8BC2-0004E2013C71}");
inline constexpr Guid kCommandRegistry = MakeGuid("{A27DD119-38A1-11D6-81CD-00C15069EBD8}");
/// Looked up by the worker of "coverage_display"; none of its operations is called.
inline constexpr Guid kCommandOutputService = MakeGuid("{A27DD118-38A0-11D5-80CC-00C04F68EAD7}");
inline constexpr Guid kFrame = MakeGuid("{0C6ED387-4E53-4FE4-B2C5-6D82B38A4046}");
/// The session-data accessor, and the identifier that its Open is given.
inline constexpr Guid kSessionData = MakeGuid("{48FF5DA0-6FFA-11D5-B7CE-00E029352378}");
inline constexpr Guid kWindowService1 = MakeGuid("{A7157579-B694-4F6F-B01F-9AC41F0D499C}");
inline constexpr Guid kWindowService2 = MakeGuid("{77142A87-2BD6-4D9B-90AC-1304A51BB980}");
inline constexpr Guid kWindowService3 = MakeGuid("{DB9960B8-2821-4536-BC23-6375746ADF28}");
inline constexpr Guid kWindowService4 = MakeGuid("{77E9A101-574E-4BBF-86DE-BE89E0B5BCA5}");

// Looked up and kept; nothing calls their operations.
inline constexpr Guid kHostAux = MakeGuid("{BEAF1680-E31D-11D5-80EE-00C04F68EAD7}");
inline constexpr Guid kHostAux2 = MakeGuid("{A8495752-DE13-11D3-8AF5-00AA0026624A}");

/// The execution-state service, first of the debugger interfaces.
inline constexpr Guid kExecutionState = MakeGuid("{160415CE-14A7-11D6-80FC-00C04F68EAD7}");

/// The interfaces that every debugger-aware object looks up when it is bound to the host, in this order.
inline constexpr Guid kDebuggerInterfaces[] = {
    kExecutionState,
    MakeGuid("{914F4C74-D760-11D4-940A-00C04F68EB57}"),
    kMemory,
    MakeGuid("{52E19F40-C937-11D5-8BC1-0004E2013C71}"),
    MakeGuid("{A2E8A611-CC1E-4173-985E-E38024BD0EC1}"),
    MakeGuid("{C6CB7C2E-01BD-11D5-80BD-00C04F68EAD7}"),
    kTraceStart,
    MakeGuid("{EF5378F6-C12B-4BF6-9181-DB4BC8F0F54A}"),
};

}  // namespace iid

/// Identifiers that are handed over as values rather than asked for.
namespace id {

/// Last argument of the column registration.
inline constexpr Guid kColumnRegistration = MakeGuid("{C52F732D-C509-4FAE-86FC-5CC057968910}");
/// Given twice to the frame service's column settings.
inline constexpr Guid kColumnSetting = MakeGuid("{A9D986D2-6596-4C69-B4BA-06F0A36A26FD}");
/// Category of the component's message options.
inline constexpr Guid kMessageCategory = MakeGuid("{05F7F2A0-7AE6-11D5-B7CE-00E029352378}");
/// The coverage test client, as its description names it.
inline constexpr Guid kTestClient = MakeGuid("{344B5690-6D1E-11DA-8CD6-0800200C9A66}");

}  // namespace id

/// Events that IQComponent2::OnDebugEvent is called with.
namespace event {

/// Redraw the views.
inline constexpr Guid kRedraw = MakeGuid("{2289D0FB-1242-11D5-9690-00B0D0167C2F}");
/// The program's symbols changed: a program was downloaded.
inline constexpr Guid kDownload = MakeGuid("{2289D125-1242-11D5-9690-00B0D0167C2F}");
/// New coverage data is available.
inline constexpr Guid kCoverage = MakeGuid("{6FBF8260-37F3-11D5-A5D8-0000E2257DCD}");
/// The target was reset.
inline constexpr Guid kReset = MakeGuid("{3B755ACB-430C-461A-8E2D-547D1DC6AD2F}");
/// Known; no action.
inline constexpr Guid kIgnored = MakeGuid("{2289D0F9-1242-11D5-9690-00B0D0167C2F}");
/// Passed to every pane as its first and its second notification.
inline constexpr Guid kPaneFirst = MakeGuid("{2289D12E-1242-11D5-9690-00B0D0167C2F}");
inline constexpr Guid kPaneSecond = MakeGuid("{2289D130-1242-11D5-9690-00B0D0167C2F}");

}  // namespace event

}  // namespace qal
