// SPDX-License-Identifier: Apache-2.0
#pragma once
// What the plug-in reports to the host about itself. Constants only: the entry point, the about
// text and the bundle's descriptor read them from here, so that they can't disagree.

#include "platform/Commands.h"

namespace identity {

inline constexpr const char* kName = "Orbel";
inline constexpr const char* kCategory = "TARNWICK";         // the group in the effects menu
inline constexpr const char* kMatchName = "TARNWICK Orbel";  // projects store it; never changes
inline constexpr const char* kDescription = "Custom lens blur plugin for After Effects.";
inline constexpr const char* kEntryPoint = "EntryPointFunc";

// The version of the host's interface that the code is written for; threaded rendering needs 13.25.
inline constexpr std::uint16_t kInterfaceMajor = 13;
inline constexpr std::uint16_t kInterfaceMinor = 28;

inline constexpr A_u_long kVersion = 1;
inline constexpr A_u_long kSubversion = 4;
inline constexpr A_u_long kBugFix = 0;
inline constexpr A_u_long kStage = 0;  // a development build, in the host's terms
inline constexpr A_u_long kBuild = 1;

// The host's packing: build in bits 0 to 8, stage 9 and 10, bug-fix 11 to 14, subversion 15 to 18,
// version 19 to 21.
inline constexpr A_u_long kPackedVersion =
    kVersion << 19 | kSubversion << 15 | kBugFix << 11 | kStage << 9 | kBuild;
static_assert(kPackedVersion == 0xA0001);

// The stages accept 16-bit worlds, and the host asks for the state of the controls.
inline constexpr PF_OutFlags kOutFlags =
    PF_OutFlag_KEEP_RESOURCE_OPEN | PF_OutFlag_DEEP_COLOR_AWARE | PF_OutFlag_SEND_UPDATE_PARAMS_UI;
static_assert(kOutFlags == 0x6000001);

// Smart rendering is the only render path, the stages accept float worlds, and several frames may
// be rendered at once.
inline constexpr PF_OutFlags2 kOutFlags2 =
    PF_OutFlag2_REVEALS_ZERO_ALPHA | PF_OutFlag2_SUPPORTS_SMART_RENDER |
    PF_OutFlag2_FLOAT_COLOR_AWARE | PF_OutFlag2_SUPPORTS_THREADED_RENDERING;
static_assert(kOutFlags2 == 0x8001480);

}  // namespace identity
