// The chip catalog: every kind through a unit of the simulated SDK (probes, bitmaps, the HiGig
// cancel action, its chip table row, its chip model), and what the catalog covers as a whole.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "platform/shim/SdkCall.h"
#include "tests/sim/sdk/SimSdkFixture.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "SimSdkTest::ChipCatalog" )

namespace SimSdkTest {
namespace {

using HalyardCentral::ChipAttribute;
using HalyardCentral::chipAttributeAll;

std::vector<std::string> kindNames() {
   std::vector<std::string> names;
   for ( const ChipKind& k : chipCatalog() ) {
      names.push_back( k.name );
   }
   return names;
}

class CatalogKindTest : public SimSdkFixture, public ::testing::WithParamInterface<std::string> {
 protected:
   CatalogKindTest() : SimSdkFixture( GetParam() ) {}
};

TEST_P( CatalogKindTest, ProbesOfAUnitAreThoseOfItsKind ) {
   EXPECT_EQ( kind_.probes.groupA, isChipGroupA( kUnit ) );
   EXPECT_EQ( kind_.probes.groupB, isChipGroupB( kUnit ) );
   EXPECT_EQ( kind_.probes.groupC, isChipGroupC( kUnit ) );
   EXPECT_EQ( kind_.probes.groupD, isChipGroupD( kUnit ) );
   EXPECT_EQ( kind_.probes.groupE, isChipGroupE( kUnit ) );
   EXPECT_EQ( kind_.probes.groupF, isChipGroupF( kUnit ) );
}

TEST_P( CatalogKindTest, BitmapsOfAUnit ) {
   int all = 0, front = 0, ethernet = 0;
   const bcm_pbmp_t allPorts = PBMP_ALL( kUnit );
   const bcm_pbmp_t frontPorts = PBMP_PORT_ALL( kUnit );
   const bcm_pbmp_t ethernetPorts = PBMP_E_ALL( kUnit );
   BCM_PBMP_COUNT( allPorts, all );
   BCM_PBMP_COUNT( frontPorts, front );
   BCM_PBMP_COUNT( ethernetPorts, ethernet );
   const int ports = static_cast<int>( kind_.portCount );
   EXPECT_EQ( ports, all );
   EXPECT_TRUE( allPorts.member( 0 ) );  // the CPU port
   EXPECT_EQ( ports - 1, front );
   EXPECT_FALSE( frontPorts.member( 0 ) );
   EXPECT_EQ( ports - 1 - static_cast<int>( kind_.hiGigPorts ), ethernet );
   EXPECT_EQ( kind_.hiGigPorts == 0, ethernetPorts.member( ports - 1 ) );
   EXPECT_EQ( portBitmapOf( allPorts ), chip_.ports().allPorts() );
}

TEST_P( CatalogKindTest, HiGigTrunkCancelFollowsProbeC ) {
   const EntryId e = newEntry();
   SDK_CHECK( bcm_field_action_add( kUnit, e, BCM_HG_TRUNK_CANCEL_ACTION( kUnit ), 0, 0 ) );
   EXPECT_EQ( kind_.probes.groupC, chip_.action( e, ActionId::HgTrunkResolveCancel ).has_value() );
   EXPECT_EQ( !kind_.probes.groupC,
              chip_.action( e, ActionId::TrunkLoadBalanceCancel ).has_value() );
}

TEST_P( CatalogKindTest, ChipTableRowHoldsTheKindsAttributes ) {
   auto table = HalyardCentral::halyardAttributesFactory();
   chipTableFill( *table );
   const auto row = table->chip( kind_.chipInfo );
   ASSERT_TRUE( row );
   for ( ChipAttribute a : chipAttributeAll ) {
      EXPECT_EQ( kind_.attribute( a ), row->attribute( a ) ) << Vesper::stringValue( a );
   }
   EXPECT_EQ( kind_.attribute( ChipAttribute::usesRangeConfig ), row->usesRangeConfig() );
}

TEST_P( CatalogKindTest, ChipModelHasTheKindsPools ) {
   ChipModel chip( kind_.chipConfig( 5 ) );
   EXPECT_EQ( kind_.portCount, chip.ports().portCount() );
   EXPECT_EQ( 5, chip.config().moduleId );
   for ( U32 i = 0; i < kind_.rangeCheckers; ++i ) {
      ASSERT_TRUE( chip.rangeCheckerCreate( { RangeType::SrcPort, i, i } ).has_value() );
   }
   EXPECT_FALSE( chip.rangeCheckerCreate( { RangeType::SrcPort, 0, 1 } ).has_value() );
   for ( U32 i = 0; i < kind_.udfChunks; ++i ) {
      ASSERT_TRUE( chip.udfCreate( { UdfBase::L4Payload, static_cast<U8>( 2 * i ), 2 } ) );
   }
   EXPECT_FALSE( chip.udfCreate( { UdfBase::L2Header, 0, 2 } ).has_value() );
}

TEST_P( CatalogKindTest, CapacitiesAreOfTheRightOrder ) {
   EXPECT_EQ( 4u, kind_.vfp.slices() );
   EXPECT_EQ( 4u, kind_.efp.slices() );
   EXPECT_GE( kind_.ifp.slices(), 9u );
   EXPECT_LE( kind_.ifp.slices(), 12u );
   EXPECT_TRUE( ( kind_.rangeCheckers >= 24 && kind_.rangeCheckers <= 32 ) ||
                kind_.rangeCheckers == 64 );
   EXPECT_GE( kind_.udfChunks, 8u );
   EXPECT_GT( kind_.portCount, kind_.hiGigPorts + 32 );
   EXPECT_EQ( kind_.hiGigPorts > 0, kind_.attribute( ChipAttribute::hasHiGigPorts ) );
   // The same fact, carried twice, must agree.
   EXPECT_EQ( kind_.probes.groupF, kind_.attribute( ChipAttribute::protocol141IsExtensionHeader ) );
}

INSTANTIATE_TEST_SUITE_P( Catalog, CatalogKindTest, ::testing::ValuesIn( kindNames() ),
                          []( const auto& info ) { return info.param; } );

// ---- The catalog as a whole.

TEST( ChipCatalog, EveryProbeAnswersYesAndNo ) {
   const bool ChipProbes::*probes[] = { &ChipProbes::groupA, &ChipProbes::groupB,
                                        &ChipProbes::groupC, &ChipProbes::groupD,
                                        &ChipProbes::groupE, &ChipProbes::groupF };
   for ( std::size_t i = 0; i < std::size( probes ); ++i ) {
      std::set<bool> answers;
      for ( const ChipKind& k : chipCatalog() ) {
         answers.insert( k.probes.*probes[i] );
      }
      EXPECT_EQ( 2u, answers.size() ) << "probe " << char( 'A' + i );
   }
}

TEST( ChipCatalog, EveryAttributeAnswersYesAndNo ) {
   for ( ChipAttribute a : chipAttributeAll ) {
      std::set<bool> answers;
      for ( const ChipKind& k : chipCatalog() ) {
         answers.insert( k.attribute( a ) );
      }
      EXPECT_EQ( 2u, answers.size() ) << Vesper::stringValue( a );
   }
}

TEST( ChipCatalog, FamilyCodesSevenAndEightAndOthers ) {
   std::multiset<U32> families;
   for ( const ChipKind& k : chipCatalog() ) {
      families.insert( k.chipInfo.familyCode() );
   }
   EXPECT_GE( chipCatalog().size(), 4u );
   EXPECT_EQ( 1u, families.count( 7 ) );
   EXPECT_EQ( 1u, families.count( 8 ) );
   EXPECT_GT( families.size(), families.count( 7 ) + families.count( 8 ) );
}

TEST( ChipCatalog, NamesAndChipInfosAreUniqueAndLookedUp ) {
   std::set<std::string> names;
   std::set<HalyardCentral::ChipInfo> chips;
   for ( const ChipKind& k : chipCatalog() ) {
      EXPECT_TRUE( names.insert( k.name ).second ) << k.name;
      EXPECT_TRUE( chips.insert( k.chipInfo ).second ) << k.name;
      EXPECT_FALSE( k.chipInfo.isEmpty() );
      EXPECT_EQ( &k, chipKindByName( k.name ) );
      EXPECT_EQ( &k, chipKindOf( k.chipInfo ) );
   }
   EXPECT_EQ( nullptr, chipKindByName( "trident9" ) );
   EXPECT_EQ( nullptr, chipKindOf( HalyardCentral::ChipInfo() ) );
}

TEST( ChipCatalog, GenerationsKeepTheirSliceLayouts ) {
   const ChipKind& td2 = kindNamed( "trident2" );
   EXPECT_EQ( 12u, td2.ifp.slices() );

   const ChipKind& th = kindNamed( "tomahawk" );
   EXPECT_EQ( std::vector<U32>( 12, 512 ), th.ifp.narrowEntries );
   EXPECT_EQ( 12u * 256u, th.ifp.totalWide() );

   const ChipKind& th3 = kindNamed( "tomahawk3" );
   EXPECT_THAT( th3.ifp.narrowEntries,
                ::testing::ElementsAre( 256, 256, 256, 256, 256, 256, 512, 512, 512 ) );
   EXPECT_EQ( 6u * 256u + 3u * 512u, th3.ifp.totalNarrow() );
   EXPECT_EQ( 64u, th3.rangeCheckers );
}

}  // namespace
}  // namespace SimSdkTest
