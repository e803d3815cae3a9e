// SPDX-License-Identifier: Apache-2.0
#include "headless/Failures.h"

namespace headless {

namespace {

std::size_t indexOf(Operation operation) {
    return static_cast<std::size_t>(operation);
}

bool isSample(Operation operation) {
    return operation == Operation::kSubpixelSample || operation == Operation::kAreaSample;
}

}  // namespace

PF_Err Failures::apply(Rule& rule) {
    ++rule.seen;
    const bool fails = rule.seen >= rule.first && rule.seen - rule.first < rule.times;
    return fails ? rule.code : PF_Err_NONE;
}

void Failures::failAt(Operation operation, std::int64_t k, PF_Err code, std::int64_t times) {
    const std::lock_guard lock(mutex_);
    rules_[indexOf(operation)] = {0, k, times, code};
    armed_[indexOf(operation)] = true;
}

void Failures::failSuite(const std::string& name, std::int64_t k, PF_Err code, std::int64_t times) {
    const std::lock_guard lock(mutex_);
    suiteRules_[name] = {0, k, times, code};
}

void Failures::shrinkHandleAt(std::int64_t k) {
    const std::lock_guard lock(mutex_);
    shrinkRule_ = {0, k, 1, PF_Err_OUT_OF_MEMORY};
}

void Failures::clear() {
    const std::lock_guard lock(mutex_);
    for (auto& flag : armed_) flag = false;
    for (auto& value : counts_) value = 0;
    rules_ = {};
    suiteRules_.clear();
    shrinkRule_ = {};
}

std::int64_t Failures::count(Operation operation) const {
    return counts_[indexOf(operation)];
}

PF_Err Failures::check(Operation operation) {
    const std::size_t index = indexOf(operation);
    const bool hasRule = armed_[index].load(std::memory_order_relaxed);
    if (isSample(operation) && !hasRule) return PF_Err_NONE;
    counts_[index].fetch_add(1, std::memory_order_relaxed);
    if (!hasRule) return PF_Err_NONE;
    const std::lock_guard lock(mutex_);
    return apply(rules_[index]);
}

PF_Err Failures::checkSuite(const std::string& name) {
    const PF_Err general = check(Operation::kAcquireSuite);
    const std::lock_guard lock(mutex_);
    const auto rule = suiteRules_.find(name);
    const PF_Err own = rule == suiteRules_.end() ? PF_Err_NONE : apply(rule->second);
    return general != PF_Err_NONE ? general : own;
}

bool Failures::shrinksHandle() {
    const std::lock_guard lock(mutex_);
    return shrinkRule_.first > 0 && apply(shrinkRule_) != PF_Err_NONE;
}

}  // namespace headless
