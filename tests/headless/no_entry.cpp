// SPDX-License-Identifier: Apache-2.0
extern "C" int notAnEntryPoint() {
    return 0;
}
