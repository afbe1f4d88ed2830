#pragma once

namespace ZorvoDSG {

// How a dataset's arrays are laid out; the cursors choose their reading by it.
enum eDSGLayout : int {
    eLayoutOrthoMD = 1,         // orthogonal multidimensional arrays
    eLayoutSingleInstance = 2,  // one feature only
    eLayoutCRA = 3,             // contiguous ragged arrays
    eLayoutPoint = 4,           // DSG point data
    eLayoutGridded = 5,         // gridded point data; no cursor reads it
};

}  // namespace ZorvoDSG
