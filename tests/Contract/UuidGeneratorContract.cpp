#include "Contract/UuidGeneratorContract.h"

#include "Doubles/FakeSystem.h"
#include "Platform/Gtk/GLibUuidGenerator.h"

namespace fcp::test {

namespace {

using Generators = testing::Types<FakeUuidGenerator, GLibUuidGenerator>;

INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, UuidGeneratorContract, Generators);

} // namespace

} // namespace fcp::test
