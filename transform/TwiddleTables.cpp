// SPDX-License-Identifier: Apache-2.0
#include "transform/TwiddleTables.h"

#include "transform/SetUpMath.h"

namespace {

constexpr double kEighthTurn = 0.7853981633974483;  // atan(1)

// Writes the first, densest sub-table, the only one that needs sines and cosines computed.
void makeFirstSubTable(int size, double* w) {
    const double delta = kEighthTurn / size;
    w[0] = 1.0;
    w[1] = set_up::cos(delta * size);
    if (size == 4) {
        w[2] = set_up::cos(2.0 * delta);
        w[3] = set_up::sin(2.0 * delta);
    }
    if (size <= 4) return;

    w[2] = 0.5 / set_up::cos(2.0 * delta);
    w[3] = 0.5 / set_up::cos(6.0 * delta);
    const double delta3 = 3.0 * delta;
    for (int j = 4; j < size; j += 4) {
        const set_up::SineCosine once = set_up::sineAndCosine(delta * j);
        const set_up::SineCosine thrice = set_up::sineAndCosine(delta3 * j);
        w[j] = once.cosine.high;
        w[j + 1] = once.sine.high;
        w[j + 2] = thrice.cosine.high;
        w[j + 3] = -thrice.sine.high;
    }
}

// Writes the sub-table of `size` entries from the one of twice that size: every second row of it.
void halveSubTable(const double* denser, int size, double* w) {
    w[0] = 1.0;
    w[1] = denser[1];
    if (size == 4) {
        w[2] = denser[4];
        w[3] = denser[5];
    }
    if (size <= 4) return;

    w[2] = 0.5 / denser[4];
    w[3] = 0.5 / denser[6];
    for (int j = 4; j < size; j += 4) {
        for (int part = 0; part < 4; ++part) w[j + part] = denser[2 * j + part];
    }
}

}  // namespace

void makewt(int nw, int* ip, double* w) {
    ip[0] = nw;
    ip[1] = 1;
    if (nw < 3) return;

    int size = nw >> 1;
    if (size > 4) makeipt(nw, ip);
    makeFirstSubTable(size, w);
    while (size > 2) {
        const double* denser = w;
        w += size;
        size >>= 1;
        halveSubTable(denser, size, w);
    }
}

void makeipt(int nw, int* ip) {
    ip[2] = 0;
    ip[3] = 16;
    int m = 2;
    for (int l = nw; l > 32; l >>= 2) {
        const int m2 = 2 * m;
        const int q = 8 * m2;
        for (int j = m; j < m2; ++j) {
            const int p = 4 * ip[j];
            ip[m + j] = p;
            ip[m2 + j] = p + q;
        }
        m = m2;
    }
}

void makect(int nc, int* ip, double* c) {
    ip[1] = nc;
    if (nc <= 1) return;

    const int nch = nc >> 1;
    const double delta = kEighthTurn / nch;
    c[0] = set_up::cos(delta * nch);
    c[nch] = 0.5 * c[0];
    for (int j = 1; j < nch; ++j) {
        c[j] = 0.5 * set_up::cos(delta * j);
        c[nc - j] = 0.5 * set_up::sin(delta * j);
    }
}
