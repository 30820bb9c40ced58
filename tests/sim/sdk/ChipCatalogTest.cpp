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
