// SPDX-License-Identifier: Apache-2.0
// The callbacks for parameters and progress.

#include "headless/state/HostState.h"

namespace headless {

namespace {

std::string checkOutName(const ParameterSet& parameters, PF_ParamIndex index) {
    const std::string& label = parameters.info(index).label;
    return std::to_string(index) + (label.empty() ? "" : " " + label);
}

// The whole layer at the downsample of the command, in its own pixel format. Each check-out gets a
// separate copy, so that a memory checker reports reads after the check-in.
std::shared_ptr<const World> layerOf(const CallContext& context, PF_ParamIndex index) {
    const auto source = index == 0 ? context.input : context.parameters->layer(index);
    if (!source) return nullptr;
    const Geometry& geometry = context.geometry;
    const PF_LRect whole{0, 0, reducedSize(source->width(), geometry.x),
                         reducedSize(source->height(), geometry.y)};
    return reduce(*source, geometry.x, geometry.y, whole, source->format(), 16);
}

PF_Err checkout(HostState& host, CallContext& context, PF_ParamIndex index, A_Time time,
                PF_ParamDef* param) {
    const ParameterSet& parameters = *context.parameters;
    *param = parameters.evaluate(index, time, context.geometry);
    std::shared_ptr<const World> layer;
    if (param->param_type == PF_Param_LAYER) layer = layerOf(context, index);
    if (layer) param->u.ld = layer->record();
    if (context.checkedOut.count(param) > 0) {
        host.books.fault("checkout_param into a record that holds another check-out");
        host.books.takeBack("parameter",
                            checkOutName(parameters, context.checkedOut.at(param).index));
    }
    context.checkedOut[param] = {index, std::move(layer)};
    host.books.lend("parameter", checkOutName(parameters, index));
    return PF_Err_NONE;
}

PF_Err checkoutParam(PF_ProgPtr effectRef, PF_ParamIndex index, std::int32_t whatTime, std::int32_t,
                     std::uint32_t timeScale, PF_ParamDef* param) {
    return guarded([&] {
        HostState& host = HostState::current();
        host.log.add("checkout_param", index);
        CallContext* context = contextOnItsThread(effectRef, "checkout_param");
        if (!context || !param || timeScale == 0) return PF_Err_BAD_CALLBACK_PARAM;
        if (const PF_Err err = host.failures.check(Operation::kCheckoutParam)) return err;
        if (!context->parameters) {
            host.books.fault("checkout_param during " + context->command);
            return PF_Err_INVALID_CALLBACK;
        }
        if (index < 0 || index >= context->parameters->size()) return PF_Err_INVALID_INDEX;
        return checkout(host, *context, index, {whatTime, timeScale}, param);
    });
}

PF_Err checkinParam(PF_ProgPtr effectRef, PF_ParamDef* param) {
    return guarded([&] {
        HostState& host = HostState::current();
        CallContext* context = contextOnItsThread(effectRef, "checkin_param");
        if (!context || !param) return PF_Err_BAD_CALLBACK_PARAM;
        const auto entry = context->checkedOut.find(param);
        if (entry == context->checkedOut.end()) {
            host.log.add("checkin_param");
            host.books.fault("checkin_param of a record that was not checked out");
            return PF_Err_BAD_CALLBACK_PARAM;
        }
        host.log.add("checkin_param", entry->second.index);
        // A provoked failure returns a code, but the check-in still counts.
        const PF_Err injected = host.failures.check(Operation::kCheckinParam);
        host.books.takeBack("parameter", checkOutName(*context->parameters, entry->second.index));
        context->checkedOut.erase(entry);
        return injected;
    });
}

PF_Err addParam(PF_ProgPtr effectRef, PF_ParamIndex index, PF_ParamDef* def) {
    return guarded([&] {
        HostState& host = HostState::current();
        host.log.add("add_param", index, def ? def->name : "(null)");
        CallContext* context = contextOnItsThread(effectRef, "add_param");
        if (!context || !def) return PF_Err_BAD_CALLBACK_PARAM;
        if (const PF_Err err = host.failures.check(Operation::kAddParam)) return err;
        if (!context->declaring) {
            host.books.fault("add_param during " + context->command);
            return PF_Err_INVALID_CALLBACK;
        }
        // Only appending is supported.
        if (index != -1 && index != context->declaring->size()) return PF_Err_INVALID_INDEX;
        return context->declaring->declare(*def) ? PF_Err_NONE : PF_Err_UNRECOGNIZED_PARAM_TYPE;
    });
}

PF_Err reportProgress(PF_ProgPtr effectRef, std::int32_t current, std::int32_t total) {
    return guarded([&] {
        HostState& host = HostState::current();
        host.log.add("progress", current, total);
        CallContext* context = contextOnItsThread(effectRef, "progress");
        if (!context) return PF_Err_BAD_CALLBACK_PARAM;
        if (const PF_Err err = host.failures.check(Operation::kProgress)) return err;
        if (context->progress) context->progress(current, total);
        return context->isCancelled() ? PF_Interrupt_CANCEL : PF_Err_NONE;
    });
}

}  // namespace

PF_InteractCallbacks interactCallbacks() {
    PF_InteractCallbacks inter{};
    inter.checkout_param = checkoutParam;
    inter.checkin_param = checkinParam;
    inter.add_param = addParam;
    inter.progress = reportProgress;
    return inter;
}

}  // namespace headless
