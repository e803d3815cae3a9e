// SPDX-License-Identifier: Apache-2.0
#include "pictures/colour/ColourPlan.h"

#include <algorithm>
#include <initializer_list>

#include "pictures/colour/TransferFunction.h"

namespace pictures {
namespace {

constexpr const char* kLinear = "linear";

bool canKeepProfile(const ColourSpace& source, const ColourTarget& target) {
    const bool holds = target.format == "png" || target.format == "jpeg" || target.format == "tiff";
    return holds && !source.profile.empty() && (target.grey ? source.icc.grey : source.icc.colour);
}

// Whether the chunks of a PNG can say it.
bool isPngSpace(const std::string& name) {
    const auto function = TransferFunction::named(name);
    return function && (function->linear() || function->name() == "sRGB" ||
                        function->name().starts_with("Gamma"));
}

// The output's colour space unless the user names one.
std::string usualResult(const ColourPlan& plan, const ColourTarget& target) {
    const ColourSpace& source = plan.source;
    const bool fromPng = source.format == "png" && isPngSpace(source.name);
    if (plan.keepsProfile || (fromPng && target.format == "png")) return source.name;
    const bool light = target.format == "openexr" || target.format == "hdr" || target.floating;
    return light ? kLinear : "sRGB";
}

void replaceUnknownName(ColourSpace& source, const std::string& sourceName,
                        const ColourConfig& config, Messages& messages) {
    if (config.knows(source.name)) return;
    messages.warn(sourceName + " says that its colour space is \"" + source.name +
                  "\", which is unknown; taken as " + source.implied);
    source.name = source.implied;
    source.assumed = true;
}

void warnAboutUnknownCurve(const ColourPlan& plan, const std::string& sourceName,
                           Messages& messages) {
    if (!plan.source.unknownCurve() || (plan.decode.identity() && plan.encode.identity())) return;
    messages.warn(sourceName + ": the curve of its profile \"" + plan.source.profile +
                  "\" is unknown; taken as " + plan.source.name);
}

// Whether the output's metadata hold what names the source's primaries.
bool carriesPrimaries(const ColourPlan& plan, const ColourTarget& target) {
    if (plan.source.primaries.empty() || plan.keepsProfile) return true;
    return target.format == "openexr" && plan.source.format == "openexr";
}

void eraseAll(OIIO::ImageSpec& imageSpec, std::initializer_list<const char*> names) {
    for (const char* name : names) imageSpec.erase_attribute(name);
}

void eraseProfile(OIIO::ImageSpec& imageSpec) {
    imageSpec.extra_attribs.erase(
        std::remove_if(imageSpec.extra_attribs.begin(), imageSpec.extra_attribs.end(),
                       [](const OIIO::ParamValue& value) {
                           return value.name().string().starts_with("ICCProfile");
                       }),
        imageSpec.extra_attribs.end());
}

}  // namespace

ColourPlan planColours(const ColourSpace& source, const std::string& sourceName,
                       const ColourTarget& target, const ColourWishes& wishes,
                       const ColourConfig& config, Messages& messages) {
    ColourPlan plan;
    plan.source = wishes.in.empty() ? source : namedColourSpace(wishes.in, source);
    plan.chosen = !wishes.out.empty();
    plan.raw = wishes.raw;
    if (!wishes.raw) replaceUnknownName(plan.source, sourceName, config, messages);

    const std::string& from = plan.source.name;
    plan.keepsProfile = canKeepProfile(plan.source, target);
    plan.result = !wishes.out.empty() ? wishes.out : wishes.raw ? from : usualResult(plan, target);
    plan.converts = !sameName(plan.result, from);
    plan.keepsProfile = plan.keepsProfile && !plan.converts;

    const std::string rendered = wishes.linear ? kLinear : from;
    plan.linearLight = config.isLinear(rendered);
    if (wishes.raw) return plan;
    plan.decode = ColourConverter(from, rendered, config);
    plan.encode = ColourConverter(rendered, plan.result, config);
    plan.keepsPrimaries =
        !plan.converts || (plan.decode.keepsPrimaries() && plan.encode.keepsPrimaries());
    warnAboutUnknownCurve(plan, sourceName, messages);
    return plan;
}

void tellColours(const ColourPlan& plan, const std::string& sourceName,
                 const std::filesystem::path& output, const ColourTarget& target,
                 Messages& messages) {
    if (plan.raw) return;
    if (plan.converts && !plan.chosen) {
        messages.note(output.string() + " is encoded as " + plan.result + ": " + sourceName +
                      (plan.source.assumed ? " is taken as " : " is ") + plan.source.name);
    }
    if (plan.keepsPrimaries && !carriesPrimaries(plan, target)) {
        messages.note(output.string() + " doesn't say which primaries it has: those of " +
                      sourceName + " (" + plan.source.primaries + "), not converted");
    }
}

void describeColours(OIIO::ImageSpec& imageSpec, const ColourPlan& plan,
                     const ColourTarget& target) {
    const bool exr = target.format == "openexr";
    eraseAll(imageSpec, {"oiio:ColorSpace", "oiio:Gamma", "dpx:Transfer", "dpx:Colorimetric",
                         "cineon:ImageDescriptor"});
    if (!exr || !plan.keepsPrimaries) imageSpec.erase_attribute("chromaticities");
    if (!exr || plan.converts) imageSpec.erase_attribute("colorInteropID");
    if (plan.keepsProfile) return;  // it says everything
    eraseProfile(imageSpec);
    eraseAll(imageSpec, {"Exif:ColorSpace", "Exif:Gamma"});
    imageSpec.attribute("oiio:ColorSpace", plan.result);
    const bool said = imageSpec.find_attribute("colorInteropID") != nullptr;
    if (exr && !said && sameName(plan.result, "sRGB") && plan.source.primaries.empty()) {
        imageSpec.attribute("colorInteropID", "srgb_rec709_scene");
    }
}

}  // namespace pictures
