#include <zorvodsg/cursor/detail/ObservationArrays.h>

#include <algorithm>

#include <zorvodsg/cursor/detail/SampleWindow.h>
#include <zorvodsg/cursor/detail/TypedFill.h>

namespace ZorvoDSG::detail {

std::vector<System::NcVariantArray> MakeObservationArrays(const std::vector<ObservationVariable>& variables,
                                                          long reserve) {
    std::vector<System::NcVariantArray> arrays;
    arrays.reserve(variables.size());
    for (const ObservationVariable& variable : variables) {
        arrays.emplace_back(variable.Type(), ZorvoNetCDFDSG::detail::TypedFill(variable), reserve,
                            ZorvoNetCDFDSG::detail::ObservationStringWidth(variable));
    }
    return arrays;
}

void ReserveObservationArrays(std::vector<System::NcVariantArray>& arrays, long reserve) {
    for (System::NcVariantArray& array : arrays) {
        array.SetReserved(reserve);
    }
}

void EmptyObservationArrays(std::vector<System::NcVariantArray>& arrays) {
    for (System::NcVariantArray& array : arrays) {
        array.SetSize(0);
    }
}

}  // namespace ZorvoDSG::detail
