#pragma once
// The element types that blocks and kernel banks are made of. Their transforms are compiled in
// translation units of their own (see CMakeLists.txt) and not where they are used.

// Kernel banks of N layers; widths 4, 10 and 15 stand among the blocks.
extern template struct FFT2D<ET::vecT<double, 1>>;
extern template struct FFT2D<ET::vecT<double, 2>>;
extern template struct FFT2D<ET::vecT<double, 3>>;
extern template struct FFT2D<ET::vecT<double, 5>>;
extern template struct FFT2D<ET::vecT<double, 6>>;
extern template struct FFT2D<ET::vecT<double, 7>>;
extern template struct FFT2D<ET::vecT<double, 8>>;
extern template struct FFT2D<ET::vecT<double, 9>>;
extern template struct FFT2D<ET::vecT<double, 11>>;
extern template struct FFT2D<ET::vecT<double, 12>>;
extern template struct FFT2D<ET::vecT<double, 13>>;
extern template struct FFT2D<ET::vecT<double, 14>>;
extern template struct FFT2D<ET::vecT<double, 16>>;

// Blocks: without depth layers, then five lanes for each of 2 to 16 layers.
extern template struct FFT2D<ET::vecT<double, 4>>;
extern template struct FFT2D<ET::vecT<double, 10>>;
extern template struct FFT2D<ET::vecT<double, 15>>;
extern template struct FFT2D<ET::vecT<double, 20>>;
extern template struct FFT2D<ET::vecT<double, 25>>;
extern template struct FFT2D<ET::vecT<double, 30>>;
extern template struct FFT2D<ET::vecT<double, 35>>;
extern template struct FFT2D<ET::vecT<double, 40>>;
extern template struct FFT2D<ET::vecT<double, 45>>;
extern template struct FFT2D<ET::vecT<double, 50>>;
extern template struct FFT2D<ET::vecT<double, 55>>;
extern template struct FFT2D<ET::vecT<double, 60>>;
extern template struct FFT2D<ET::vecT<double, 65>>;
extern template struct FFT2D<ET::vecT<double, 70>>;
extern template struct FFT2D<ET::vecT<double, 75>>;
extern template struct FFT2D<ET::vecT<double, 80>>;

// The same blocks, seen through their colour and weight lanes.
extern template struct FFT2D<ET::StrideVecT<double, 4, 4>>;
extern template struct FFT2D<ET::StrideVecT<double, 6, 10>>;
extern template struct FFT2D<ET::StrideVecT<double, 7, 15>>;
extern template struct FFT2D<ET::StrideVecT<double, 8, 20>>;
extern template struct FFT2D<ET::StrideVecT<double, 9, 25>>;
extern template struct FFT2D<ET::StrideVecT<double, 10, 30>>;
extern template struct FFT2D<ET::StrideVecT<double, 11, 35>>;
extern template struct FFT2D<ET::StrideVecT<double, 12, 40>>;
extern template struct FFT2D<ET::StrideVecT<double, 13, 45>>;
extern template struct FFT2D<ET::StrideVecT<double, 14, 50>>;
extern template struct FFT2D<ET::StrideVecT<double, 15, 55>>;
extern template struct FFT2D<ET::StrideVecT<double, 16, 60>>;
extern template struct FFT2D<ET::StrideVecT<double, 17, 65>>;
extern template struct FFT2D<ET::StrideVecT<double, 18, 70>>;
extern template struct FFT2D<ET::StrideVecT<double, 19, 75>>;
extern template struct FFT2D<ET::StrideVecT<double, 20, 80>>;
