// SPDX-License-Identifier: Apache-2.0
#pragma once
// Pixel buffers ("worlds", also called layers) of the host's C interface.

#include "platform/Scalars.h"

inline constexpr PF_WorldFlags PF_WorldFlag_DEEP = 1 << 0;       // 16 bits per channel
inline constexpr PF_WorldFlags PF_WorldFlag_WRITEABLE = 1 << 1;  // the holder may write pixels

// One pixel buffer. The host owns the pixels; the record may be copied.
// Row y starts at `data + y * rowbytes`; rowbytes may exceed width times the pixel size.
// A layer parameter set to none reads as a record of zeros; otherwise reserved0 isn't null.
struct PF_LayerDef {
    void* reserved0;
    void* reserved1;
    PF_WorldFlags world_flags;
    void* data;
    std::int32_t rowbytes;
    std::int32_t width;   // pixels
    std::int32_t height;  // pixels
    PF_Rect extent_hint;
    void* platform_ref;
    std::int32_t reserved_long1;
    void* reserved_long4;
    PF_RationalScale pix_aspect_ratio;
    void* reserved_long2;
    std::int32_t origin_x;  // left edge of the buffer in the layer, in pixels of the downsample
    std::int32_t origin_y;
    std::int32_t reserved_long3;
    std::int32_t dephault;
};
ORBEL_LAYOUT_SIZE(PF_LayerDef, 120);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, reserved0, 0);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, reserved1, 8);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, world_flags, 16);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, data, 24);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, rowbytes, 32);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, width, 36);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, height, 40);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, extent_hint, 44);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, platform_ref, 64);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, reserved_long1, 72);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, reserved_long4, 80);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, pix_aspect_ratio, 88);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, reserved_long2, 96);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, origin_x, 104);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, origin_y, 108);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, reserved_long3, 112);
ORBEL_LAYOUT_OFFSET(PF_LayerDef, dephault, 116);

using PF_EffectWorld = PF_LayerDef;

// The arguments of a sampling call. `src` is not owned; a box extends by the radius to either side.
struct PF_SampPB {
    PF_Fixed x_radius;
    PF_Fixed y_radius;
    PF_Fixed area;
    PF_EffectWorld* src;
    PF_SampleEdgeBehav samp_behave;
    std::int32_t allow_asynch;
    std::int32_t motion_blur;
    std::int32_t comp_mode[3];
    void* mask0;
    void* fcm_table;
    void* fcd_table;
    std::int32_t reserved[8];
};
ORBEL_LAYOUT_SIZE(PF_SampPB, 104);
ORBEL_LAYOUT_OFFSET(PF_SampPB, x_radius, 0);
ORBEL_LAYOUT_OFFSET(PF_SampPB, y_radius, 4);
ORBEL_LAYOUT_OFFSET(PF_SampPB, area, 8);
ORBEL_LAYOUT_OFFSET(PF_SampPB, src, 16);
ORBEL_LAYOUT_OFFSET(PF_SampPB, samp_behave, 24);
ORBEL_LAYOUT_OFFSET(PF_SampPB, allow_asynch, 28);
ORBEL_LAYOUT_OFFSET(PF_SampPB, motion_blur, 32);
ORBEL_LAYOUT_OFFSET(PF_SampPB, comp_mode, 36);
ORBEL_LAYOUT_OFFSET(PF_SampPB, mask0, 48);
ORBEL_LAYOUT_OFFSET(PF_SampPB, fcm_table, 56);
ORBEL_LAYOUT_OFFSET(PF_SampPB, fcd_table, 64);
ORBEL_LAYOUT_OFFSET(PF_SampPB, reserved, 72);
