// SPDX-License-Identifier: Apache-2.0
#pragma once
// Tables of the one-dimensional transform. Both are plain arrays that the caller owns; a transform
// of n array elements needs them built for nw >= n / 4 and only reads them.
//
//   ip[0]        nw, the size that the tables are built for; 0 when there are none
//   ip[1]        1, or the size of the cosine table after makect
//   ip[2]...     seeds of the bit reversal; sqrt(nw) + 2 integers hold the whole of ip
//   w[0..nw)     twiddles: for s = nw/2, nw/4, ... 2 a sub-table of s doubles at w[nw - 2s]
//
// Sub-table of size s, with d = (pi/4) / s:
//
//   0            1
//   1            cos(pi/4)
//   2, 3         s > 4: 0.5 / cos(2d), 0.5 / cos(6d), the factors of a bisection between two rows
//                s = 4: cos(2d), sin(2d)
//   j..j+3       row j = 4, 8, ... below s: cos(jd), sin(jd), cos(3jd), -sin(3jd)

// Builds ip and w for table size `nw`, a power of two; w holds `nw` doubles.
void makewt(int nw, int* ip, double* w);

// Fills in the seeds of the bit reversal for table size `nw`, above 8: part of makewt.
void makeipt(int nw, int* ip);

// Builds a table of `nc` halved cosines of a quarter turn in `c` and stores `nc` in ip[1]. The
// complex transform has no use for it.
void makect(int nc, int* ip, double* c);
