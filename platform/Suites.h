// SPDX-License-Identifier: Apache-2.0
#pragma once
// Function suites, which the host hands out by name and version.
//
// The order of the entries is the interface. Entries that the effect doesn't use are untyped
// pointers, so that a call through one of them doesn't compile.

#include "platform/Worlds.h"

extern "C" {

// The provider of all suites. May be called on any thread.
struct SPBasicSuite {
    // Puts the table of suite `name`, `version` into `*suite` and counts one acquisition.
    SPErr (*AcquireSuite)(const char* name, std::int32_t version, const void** suite);
    // Releases one acquisition.
    SPErr (*ReleaseSuite)(const char* name, std::int32_t version);
    void* IsEqual;
    void* AllocateBlock;
    void* FreeBlock;
    void* ReallocateBlock;
    void* Undefined;
};
ORBEL_LAYOUT_SIZE(SPBasicSuite, 56);
ORBEL_LAYOUT_OFFSET(SPBasicSuite, AcquireSuite, 0);
ORBEL_LAYOUT_OFFSET(SPBasicSuite, ReleaseSuite, 8);
ORBEL_LAYOUT_OFFSET(SPBasicSuite, IsEqual, 16);
ORBEL_LAYOUT_OFFSET(SPBasicSuite, AllocateBlock, 24);
ORBEL_LAYOUT_OFFSET(SPBasicSuite, FreeBlock, 32);
ORBEL_LAYOUT_OFFSET(SPBasicSuite, ReallocateBlock, 40);
ORBEL_LAYOUT_OFFSET(SPBasicSuite, Undefined, 48);

}  // extern "C"

inline constexpr const char* kPFSampling8Suite = "PF Sampling8 Suite";
inline constexpr const char* kPFSampling16Suite = "PF Sampling16 Suite";
inline constexpr const char* kPFSamplingFloatSuite = "PF SamplingFloat Suite";
inline constexpr std::int32_t kPFSamplingSuiteVersion1 = 1;

extern "C" {

// Samples `params->src` at the 16.16 position (x, y); pixel i has its centre at coordinate i, and
// outside the source alpha is zero. May be called on many threads at once.
// `subpixel_sample` returns the alpha-weighted bilinear value. `area_sample` returns the
// alpha-weighted mean of the colours and the plain mean of alpha over the box that extends x_radius
// and y_radius (16.16, at most 128 pixels) to either side; zero where the box has no alpha.
struct PF_Sampling8Suite1 {
    PF_Err (*nn_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                        PF_Pixel* pixel);
    PF_Err (*subpixel_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y,
                              const PF_SampPB* params, PF_Pixel* pixel);
    PF_Err (*area_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                          PF_Pixel* pixel);
};
ORBEL_LAYOUT_SIZE(PF_Sampling8Suite1, 24);
ORBEL_LAYOUT_OFFSET(PF_Sampling8Suite1, nn_sample, 0);
ORBEL_LAYOUT_OFFSET(PF_Sampling8Suite1, subpixel_sample, 8);
ORBEL_LAYOUT_OFFSET(PF_Sampling8Suite1, area_sample, 16);

// The same for 16 bits per channel.
struct PF_Sampling16Suite1 {
    PF_Err (*nn_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                        PF_Pixel16* pixel);
    PF_Err (*subpixel_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y,
                              const PF_SampPB* params, PF_Pixel16* pixel);
    PF_Err (*area_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                          PF_Pixel16* pixel);
};
ORBEL_LAYOUT_SIZE(PF_Sampling16Suite1, 24);
ORBEL_LAYOUT_OFFSET(PF_Sampling16Suite1, nn_sample, 0);
ORBEL_LAYOUT_OFFSET(PF_Sampling16Suite1, subpixel_sample, 8);
ORBEL_LAYOUT_OFFSET(PF_Sampling16Suite1, area_sample, 16);

// The same for float channels.
struct PF_SamplingFloatSuite1 {
    PF_Err (*nn_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                        PF_PixelFloat* pixel);
    PF_Err (*subpixel_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y,
                              const PF_SampPB* params, PF_PixelFloat* pixel);
    PF_Err (*area_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                          PF_PixelFloat* pixel);
};
ORBEL_LAYOUT_SIZE(PF_SamplingFloatSuite1, 24);
ORBEL_LAYOUT_OFFSET(PF_SamplingFloatSuite1, nn_sample, 0);
ORBEL_LAYOUT_OFFSET(PF_SamplingFloatSuite1, subpixel_sample, 8);
ORBEL_LAYOUT_OFFSET(PF_SamplingFloatSuite1, area_sample, 16);

}  // extern "C"

inline constexpr const char* kPFWorldSuite = "PF World Suite";
inline constexpr std::int32_t kPFWorldSuiteVersion2 = 2;

extern "C" {

struct PF_WorldSuite2 {
    // Allocates pixels of `format` and fills `*world`; the caller owns them until PF_DisposeWorld.
    // Pixels are zeroed only if `clear_pixels` is set. Returns 4 when memory is short.
    PF_Err (*PF_NewWorld)(PF_ProgPtr effect_ref, std::int32_t width, std::int32_t height,
                          PF_Boolean clear_pixels, PF_PixelFormat format, PF_EffectWorld* world);
    // Frees the pixels of a world made by PF_NewWorld.
    PF_Err (*PF_DisposeWorld)(PF_ProgPtr effect_ref, PF_EffectWorld* world);
    // Reports the pixel format of any world that the host handed out.
    PF_Err (*PF_GetPixelFormat)(const PF_EffectWorld* world, PF_PixelFormat* format);
};
ORBEL_LAYOUT_SIZE(PF_WorldSuite2, 24);
ORBEL_LAYOUT_OFFSET(PF_WorldSuite2, PF_NewWorld, 0);
ORBEL_LAYOUT_OFFSET(PF_WorldSuite2, PF_DisposeWorld, 8);
ORBEL_LAYOUT_OFFSET(PF_WorldSuite2, PF_GetPixelFormat, 16);

}  // extern "C"

inline constexpr const char* kAEGPIterateSuite = "AEGP Iterate Suite";
inline constexpr std::int32_t kAEGPIterateSuiteVersion1 = 1;

extern "C" {

// One item of an iteration; a non-zero result ends the iteration. `thread` is unique among the
// calls that run at one time.
using AEGP_IterateFunction = A_Err (*)(void* refcon, std::int32_t thread, std::int32_t i,
                                       std::int32_t iterations);

struct AEGP_IterateSuite1 {
    // How many threads an iteration may use.
    A_Err (*AEGP_GetNumThreads)(std::int32_t* count);
    // Calls `fn` once for each i from 0 to iterations - 1 and blocks until all calls are done.
    // Returns the first non-zero result of `fn`.
    A_Err (*AEGP_IterateGeneric)(std::int32_t iterations, void* refcon, AEGP_IterateFunction fn);
};
ORBEL_LAYOUT_SIZE(AEGP_IterateSuite1, 16);
ORBEL_LAYOUT_OFFSET(AEGP_IterateSuite1, AEGP_GetNumThreads, 0);
ORBEL_LAYOUT_OFFSET(AEGP_IterateSuite1, AEGP_IterateGeneric, 8);

}  // extern "C"

inline constexpr const char* kPFAdvAppSuite = "PF AE Adv App Suite";
inline constexpr std::int32_t kPFAdvAppSuiteVersion1 = 1;

extern "C" {

// The info panel's calls take no effect instance. Texts are copied.
struct PF_AdvAppSuite1 {
    void* PF_SetProjectDirty;
    void* PF_SaveProject;
    void* PF_SaveBackgroundState;
    void* PF_ForceForeground;
    void* PF_RestoreBackgroundState;
    void* PF_RefreshAllWindows;
    // Shows two lines.
    PF_Err (*PF_InfoDrawText)(const A_char* line1, const A_char* line2);
    // Shows a colour in the panel.
    PF_Err (*PF_InfoDrawColor)(PF_Pixel color);
    // Shows three lines.
    PF_Err (*PF_InfoDrawText3)(const A_char* line1, const A_char* line2, const A_char* line3);
    // Shows three lines, the second and third in a left and a right half.
    PF_Err (*PF_InfoDrawText3Plus)(const A_char* line1, const A_char* line2_left,
                                   const A_char* line2_right, const A_char* line3_left,
                                   const A_char* line3_right);
};
ORBEL_LAYOUT_SIZE(PF_AdvAppSuite1, 80);
ORBEL_LAYOUT_OFFSET(PF_AdvAppSuite1, PF_SetProjectDirty, 0);
ORBEL_LAYOUT_OFFSET(PF_AdvAppSuite1, PF_InfoDrawText, 48);
ORBEL_LAYOUT_OFFSET(PF_AdvAppSuite1, PF_InfoDrawColor, 56);
ORBEL_LAYOUT_OFFSET(PF_AdvAppSuite1, PF_InfoDrawText3, 64);
ORBEL_LAYOUT_OFFSET(PF_AdvAppSuite1, PF_InfoDrawText3Plus, 72);

struct PF_ParamDef;

}  // extern "C"

inline constexpr const char* kPFParamUtilsSuite = "PF Param Utils Suite";
inline constexpr std::int32_t kPFParamUtilsSuiteVersion3 = 3;

extern "C" {

// User-interface thread only.
struct PF_ParamUtilsSuite3 {
    // Applies the `ui_flags` of `def` to parameter `index`.
    PF_Err (*PF_UpdateParamUI)(PF_ProgPtr effect_ref, PF_ParamIndex index, const PF_ParamDef* def);
    void* others[8];
};
ORBEL_LAYOUT_SIZE(PF_ParamUtilsSuite3, 72);
ORBEL_LAYOUT_OFFSET(PF_ParamUtilsSuite3, PF_UpdateParamUI, 0);

}  // extern "C"

inline constexpr const char* kAEGPUtilitySuite = "AEGP Utility Suite";
inline constexpr std::int32_t kAEGPUtilitySuiteVersion11 = 11;

extern "C" {

struct AEGP_UtilitySuite11 {
    void* before[8];
    // Registers the plug-in with the host under `name` and returns its id. Main thread only.
    A_Err (*AEGP_RegisterWithAEGP)(void* refcon, const A_char* name, AEGP_PluginID* id);
    void* after[22];
};
ORBEL_LAYOUT_SIZE(AEGP_UtilitySuite11, 248);
ORBEL_LAYOUT_OFFSET(AEGP_UtilitySuite11, AEGP_RegisterWithAEGP, 64);

}  // extern "C"
