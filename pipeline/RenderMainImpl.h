// SPDX-License-Identifier: Apache-2.0
#pragma once
// The render driver's definition, for the files that instantiate it.

#include "host/Iterator.h"
#include "host/SuiteHolder.h"
#include "host/Vector.h"
#include "kernels/Filter.h"
#include "pipeline/BlockGeometry.h"
#include "pipeline/BlockStages.h"
#include "pipeline/KernelBuild.h"
#include "pipeline/MemoryShortage.h"
#include "pipeline/RenderMain.h"
#include "transform/FFT2D.h"
#include "transform/RealFFT2D.h"

// Runs the stages tile after tile and reports progress to the host: 1 of T + 1 before the first of
// T tiles, then one more after each. Ends at the first error, a cancel by the progress callback
// included.
template <std::size_t N>
int renderBlocks(PF_InData* in_data, const BlockGeometry& geometry, BlockStages<N>& stages) {
    const auto progress = [&](std::int32_t done) {
        return in_data->inter.progress(in_data->effect_ref, done, geometry.count() + 1);
    };
    int err = progress(1);
    for (std::int32_t b = 0; !err && b < geometry.count(); ++b) {
        const iRect tile = geometry.tile(b);
        err = stages.run(tile, geometry.block(tile));
        if (!err) err = progress(b + 2);
    }
    return err;
}

template <std::size_t N>
int RenderMainT(PF_InData* in_data, AEO::InData& context, PF_LayerDef* input, PF_LayerDef* output,
                const RenderInfo& info, const int& pixelFormat) {
    // These release what they hold, in reverse order, on every exit.
    AEO::SuiteHolder<PF_WorldSuite2> worlds(in_data->pica_basicP);
    worlds.acquire();
    const std::size_t size = Filter<N>::GetFilterSize(info.radius);
    Filter<N> filter(context, size);
    if (!filter.data()) return reportMemoryShortage(*in_data->pica_basicP);
    AEO::Vector<typename BlockLayout<N>::Element> block(context);
    block.resize(2 * size * size);
    if (!block.data()) return reportMemoryShortage(*in_data->pica_basicP);

    int err = PF_Err_NONE;
    const int threads = AEO::Iterator::GetNumThreads(*in_data->pica_basicP, err);
    if (err) return err;  // the count is meaningless then
    FFTWeights weights(context, static_cast<std::size_t>(threads), size);
    if (!weights.ip.data() || !weights.w.data()) return PF_Err_OUT_OF_MEMORY;

    err = KernelBuild<N>(in_data, context, info, worlds.suite, filter).run();
    if (err) return err;
    err = RealFFT2D<N>(weights, filter.data(), size).forward(context);
    if (err) return err;

    BlockStages<N> stages(context, info, *input, *output, pixelFormat, filter, weights, block);
    const BlockGeometry geometry(size, info.radius, output->width, output->height);
    return renderBlocks(in_data, geometry, stages);
}
