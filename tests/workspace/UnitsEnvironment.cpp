// Every workspace test reads files the way a host does: with the unit database loaded.

#include <gtest/gtest.h>

#include <zorvodsg/spacetime/UnitSystem.h>

namespace {

class UnitsEnvironment : public ::testing::Environment {
public:
    void SetUp() override { ZorvoDSG::s_InitUDUnits2(ZDSG_UDUNITS2_XML); }
};

[[maybe_unused]] const auto* const s_units = ::testing::AddGlobalTestEnvironment(new UnitsEnvironment);

}  // namespace
