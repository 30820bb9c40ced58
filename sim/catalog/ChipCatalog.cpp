#include "sim/catalog/ChipCatalog.h"

#include <algorithm>
#include <initializer_list>

namespace Sim {

namespace {

using HalyardCentral::ChipAttribute;
using HalyardCentral::ChipInfo;

U32 bitsOf( std::initializer_list<ChipAttribute> attrs ) {
   U32 bits = 0;
   for ( ChipAttribute a : attrs ) {
      bits |= 1u << static_cast<U32>( a );
   }
   return bits;
}

// `count` slices of `entries` narrow entries each, after those already in `s`.
StageSlices& add( StageSlices& s, U32 count, U32 entries ) {
   s.narrowEntries.insert( s.narrowEntries.end(), count, entries );
   return s;
}

StageSlices slices( U32 count, U32 entries ) {
   StageSlices s;
   return add( s, count, entries );
}

// The older generation keeps its first four IFP slices at half size.
StageSlices trident2Ifp() {
   StageSlices s = slices( 4, 128 );
   return add( s, 8, 256 );
}

// Six small slices and three large ones.
StageSlices tomahawk3Ifp() {
   StageSlices s = slices( 6, 256 );
   return add( s, 3, 512 );
}

std::vector<ChipKind> buildCatalog() {
   std::vector<ChipKind> kinds;

   ChipKind td2;
   td2.name = "trident2";
   td2.description = "Trident2-class";
   td2.chipInfo = ChipInfo( 5, 56850, 1 );
   td2.portCount = 105;
   td2.hiGigPorts = 4;
   td2.pipes = 2;
   td2.ifp = trident2Ifp();
   td2.vfp = slices( 4, 256 );
   td2.efp = slices( 4, 256 );
   td2.rangeCheckers = 24;
   td2.udfChunks = 8;
   td2.attributeBits =
       bitsOf( { ChipAttribute::needsHgTrunkCancel, ChipAttribute::hasHiGigPorts } );
   kinds.push_back( td2 );

   ChipKind td2plus = td2;
   td2plus.name = "trident2plus";
   td2plus.description = "Trident2+-class";
   td2plus.chipInfo = ChipInfo( 7, 56860, 1 );
   td2plus.rangeCheckers = 32;
   td2plus.probes.groupC = true;
   td2plus.attributeBits =
       bitsOf( { ChipAttribute::supportsIfpDstClassField, ChipAttribute::needsHgTrunkCancel,
                 ChipAttribute::hasHiGigPorts, ChipAttribute::supportsEfpHiGigQualifier,
                 ChipAttribute::supportsVxlanVniMatch } );
   kinds.push_back( td2plus );

   ChipKind td3;
   td3.name = "trident3";
   td3.description = "Trident3-class";
   td3.chipInfo = ChipInfo( 8, 56870, 1 );
   td3.portCount = 129;
   td3.pipes = 2;
   td3.ifp = slices( 12, 512 );
   td3.vfp = slices( 4, 512 );
   td3.efp = slices( 4, 512 );
   td3.rangeCheckers = 32;
   td3.udfChunks = 16;
   td3.probes.groupA = true;
   td3.probes.groupD = true;
   td3.attributeBits =
       bitsOf( { ChipAttribute::supportsIfpIpProtocolCompression,
                 ChipAttribute::supportsIfpL4PortCompression,
                 ChipAttribute::supportsIfpDstIpClassMsbNibble, ChipAttribute::usesRangeConfig,
                 ChipAttribute::udfAltFormA, ChipAttribute::supportsVxlanVniMatch } );
   kinds.push_back( td3 );

   ChipKind th;
   th.name = "tomahawk";
   th.description = "Tomahawk-class";
   th.chipInfo = ChipInfo( 6, 56960, 1 );
   th.portCount = 129;
   th.pipes = 4;
   th.ifp = slices( 12, 512 );
   th.vfp = slices( 4, 512 );
   th.efp = slices( 4, 512 );
   th.rangeCheckers = 32;
   th.udfChunks = 16;
   th.probes.groupB = true;
   th.probes.groupC = true;
   th.attributeBits =
       bitsOf( { ChipAttribute::supportsIfpIpProtocolCompression,
                 ChipAttribute::supportsIfpDstClassField, ChipAttribute::supportsVxlanVniMatch } );
   kinds.push_back( th );

   ChipKind th3;
   th3.name = "tomahawk3";
   th3.description = "Tomahawk3-class";
   th3.chipInfo = ChipInfo( 9, 56980, 1 );
   th3.portCount = 161;
   th3.pipes = 8;
   th3.ifp = tomahawk3Ifp();
   th3.vfp = slices( 4, 256 );
   th3.efp = slices( 4, 512 );
   th3.rangeCheckers = 64;
   th3.udfChunks = 16;
   th3.probes.groupA = true;
   th3.probes.groupF = true;
   th3.attributeBits = bitsOf(
       { ChipAttribute::supportsIfpIpProtocolCompression,
         ChipAttribute::supportsIfpL4PortCompression, ChipAttribute::supportsIfpDstIpClassMsbNibble,
         ChipAttribute::usesRangeConfig, ChipAttribute::protocol141IsExtensionHeader,
         ChipAttribute::udfAltFormB, ChipAttribute::supportsVxlanVniMatch } );
   kinds.push_back( th3 );

   ChipKind jericho;
   jericho.name = "jericho";
   jericho.description = "Jericho-like";
   jericho.chipInfo = ChipInfo( 11, 88670, 1 );
   jericho.portCount = 65;
   jericho.hiGigPorts = 8;
   jericho.pipes = 1;
   jericho.ifp = slices( 12, 256 );
   jericho.vfp = slices( 4, 256 );
   jericho.efp = slices( 4, 256 );
   jericho.rangeCheckers = 24;
   jericho.udfChunks = 8;
   jericho.probes.groupE = true;
   jericho.attributeBits =
       bitsOf( { ChipAttribute::needsHgTrunkCancel, ChipAttribute::hasHiGigPorts,
                 ChipAttribute::supportsEfpHiGigQualifier } );
   kinds.push_back( jericho );

   return kinds;
}

const std::vector<ChipKind>& catalog() {
   static const std::vector<ChipKind> kinds = buildCatalog();
   return kinds;
}

}  // namespace

ChipConfig ChipKind::chipConfig( S32 moduleId ) const {
   ChipConfig config{ portCount, moduleId, rangeCheckers, udfChunks };
   config.slices = { vfp, ifp, efp };
   return config;
}

std::span<const ChipKind> chipCatalog() {
   return catalog();
}

const ChipKind* chipKindByName( std::string_view name ) {
   const auto& kinds = catalog();
   const auto it = std::find_if( kinds.begin(), kinds.end(),
                                 [&]( const ChipKind& k ) { return k.name == name; } );
   return it == kinds.end() ? nullptr : &*it;
}

const ChipKind* chipKindOf( const HalyardCentral::ChipInfo& chip ) {
   const auto& kinds = catalog();
   const auto it = std::find_if( kinds.begin(), kinds.end(),
                                 [&]( const ChipKind& k ) { return k.chipInfo == chip; } );
   return it == kinds.end() ? nullptr : &*it;
}

Vesper::Ptr<HalyardCentral::ChipAttributes> chipAttributesOf( const ChipKind& kind ) {
   auto attrs = HalyardCentral::chipAttributesFactory();
   for ( ChipAttribute a : HalyardCentral::chipAttributeAll ) {
      attrs->attributeIs( a, kind.attribute( a ) );
   }
   return attrs;
}

void chipTableFill( HalyardCentral::HalyardAttributes& attrs ) {
   for ( const ChipKind& kind : catalog() ) {
      attrs.chipIs( kind.chipInfo, chipAttributesOf( kind ) );
   }
}

}  // namespace Sim
