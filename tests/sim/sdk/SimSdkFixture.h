// Shared fixture of the simulated SDK tests: one unit of a catalog chip kind behind
// Shim::sdk_, one group per stage on its chip model, and the activity lock held as on the
// activity thread, so that the SDK_* forms can give it up round each call.
//
// Include this before platform/shim/SdkNames.h.
#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/shim/Sdk.h"
#include "platform/vesper/ActivityLock.h"
#include "sim/catalog/ChipCatalog.h"
#include "sim/chip/ChipModel.h"
#include "sim/sdk/SdkValues.h"
#include "sim/sdk/SimSdk.h"

namespace SimSdkTest {

using namespace Sim;

inline const ChipKind& kindNamed( std::string_view name ) {
   const ChipKind* kind = chipKindByName( name );
   if ( !kind ) {
      throw std::runtime_error( "no chip kind " + std::string( name ) );
   }
   return *kind;
}

// The unit of the fixture, and its groups.
inline constexpr int kUnit = 0;
inline constexpr GroupId kVfp = 1;
inline constexpr GroupId kIfp = 2;
inline constexpr GroupId kEfp = 3;

class SimSdkFixture : public ::testing::Test {
 protected:
   explicit SimSdkFixture( std::string_view kindName = "trident3" )
       : kind_( kindNamed( kindName ) ), chip_( kind_.chipConfig( 0 ) ) {
      sim_.unitIs( kUnit, chip_, kind_ );
      EXPECT_EQ( Status::Ok, chip_.groupCreate( kVfp, Stage::Vfp, 1 ) );
      EXPECT_EQ( Status::Ok, chip_.groupCreate( kIfp, Stage::Ifp, 1 ) );
      EXPECT_EQ( Status::Ok, chip_.groupCreate( kEfp, Stage::Efp, 1 ) );
   }

   // Every test runs its SDK calls through the library's forms, which give the activity lock
   // up; a test that provokes violations clears them.
   void TearDown() override {
      for ( const std::string& v : sim_.gate().violations() ) {
         ADD_FAILURE() << "contract violation: " << v;
      }
   }

   // A new entry of `group`, as a manager would hand it out.
   EntryId newEntry( GroupId group = kIfp ) {
      const auto id = chip_.entryCreate( group );
      EXPECT_TRUE( id.has_value() );
      return id.value_or( 0 );
   }

   Vesper::ActivityLockGuard activity_;
   const ChipKind& kind_;
   ChipModel chip_;
   SimSdk sim_;
   Shim::SdkInstall install_{ sim_ };
};

}  // namespace SimSdkTest
