// What one type of chip can do, as the ACL back-end asks it: a counted record
// of yes-or-no members, one row of the chip table of HalyardAttributes.
//
// The platform owner (the agent's central part, or the simulation's chip
// catalog) builds a row with chipAttributesFactory(), sets its members with
// attributeIs() and installs it as Ptr<const ChipAttributes>; from then on
// the row does not change. Readers use the named accessors.
//
// Members, all false in a new row:
//   supportsIfpIpProtocolCompression  Ethernet-type and IP-protocol class qualifiers exist
//   supportsIfpL4PortCompression      layer 4 port class qualifiers exist
//   supportsIfpDstIpClassMsbNibble    destination classes match by DstIpClassMsbNibble
//   supportsIfpDstClassField          destination classes match by DstClassField
//   needsHgTrunkCancel                a dropping rule also cancels the HiGig trunk
//   usesRangeConfig                   range checkers read back with bcm_range_get
//   protocol141IsExtensionHeader      ingress IPv4 protocol 141 is an extension header match
//   udfAltFormA, udfAltFormB          either set: the other form of the UDF data calls
//   hasHiGigPorts                     HiGig (stacking) traffic reaches the egress stage
//   supportsEfpHiGigQualifier         the egress stage can qualify on HiGig
//   supportsVxlanVniMatch             rules can match a VXLAN network identifier
// Egress router ACL entries exclude HiGig traffic only where both HiGig
// members hold.
#pragma once

#include <cstddef>
#include <string>

#include "platform/vesper/Enum.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/Types.h"

namespace HalyardCentral {

enum class ChipAttribute : U8 {
   supportsIfpIpProtocolCompression,
   supportsIfpL4PortCompression,
   supportsIfpDstIpClassMsbNibble,
   supportsIfpDstClassField,
   needsHgTrunkCancel,
   usesRangeConfig,
   protocol141IsExtensionHeader,
   udfAltFormA,
   udfAltFormB,
   hasHiGigPorts,
   supportsEfpHiGigQualifier,
   supportsVxlanVniMatch,
};

// Every member, in declaration order: what a catalog walks to cover them all.
inline constexpr ChipAttribute chipAttributeAll[] = {
    ChipAttribute::supportsIfpIpProtocolCompression,
    ChipAttribute::supportsIfpL4PortCompression,
    ChipAttribute::supportsIfpDstIpClassMsbNibble,
    ChipAttribute::supportsIfpDstClassField,
    ChipAttribute::needsHgTrunkCancel,
    ChipAttribute::usesRangeConfig,
    ChipAttribute::protocol141IsExtensionHeader,
    ChipAttribute::udfAltFormA,
    ChipAttribute::udfAltFormB,
    ChipAttribute::hasHiGigPorts,
    ChipAttribute::supportsEfpHiGigQualifier,
    ChipAttribute::supportsVxlanVniMatch,
};

inline constexpr Vesper::EnumName<ChipAttribute> chipAttributeNames[] = {
    { ChipAttribute::supportsIfpIpProtocolCompression, "supportsIfpIpProtocolCompression" },
    { ChipAttribute::supportsIfpL4PortCompression, "supportsIfpL4PortCompression" },
    { ChipAttribute::supportsIfpDstIpClassMsbNibble, "supportsIfpDstIpClassMsbNibble" },
    { ChipAttribute::supportsIfpDstClassField, "supportsIfpDstClassField" },
    { ChipAttribute::needsHgTrunkCancel, "needsHgTrunkCancel" },
    { ChipAttribute::usesRangeConfig, "usesRangeConfig" },
    { ChipAttribute::protocol141IsExtensionHeader, "protocol141IsExtensionHeader" },
    { ChipAttribute::udfAltFormA, "udfAltFormA" },
    { ChipAttribute::udfAltFormB, "udfAltFormB" },
    { ChipAttribute::hasHiGigPorts, "hasHiGigPorts" },
    { ChipAttribute::supportsEfpHiGigQualifier, "supportsEfpHiGigQualifier" },
    { ChipAttribute::supportsVxlanVniMatch, "supportsVxlanVniMatch" } };
constexpr Vesper::EnumNames<ChipAttribute> vesperEnumNames( ChipAttribute ) {
   return { "HalyardCentral::ChipAttribute", chipAttributeNames };
}

class ChipAttributes : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "HalyardCentral::ChipAttributes" )

 public:
   bool attribute( ChipAttribute a ) const { return ( bits_ >> bitOf( a ) ) & 1u; }
   void attributeIs( ChipAttribute a, bool value );

   bool supportsIfpIpProtocolCompression() const {
      return attribute( ChipAttribute::supportsIfpIpProtocolCompression );
   }
   bool supportsIfpL4PortCompression() const {
      return attribute( ChipAttribute::supportsIfpL4PortCompression );
   }
   bool supportsIfpDstIpClassMsbNibble() const {
      return attribute( ChipAttribute::supportsIfpDstIpClassMsbNibble );
   }
   bool supportsIfpDstClassField() const {
      return attribute( ChipAttribute::supportsIfpDstClassField );
   }
   bool needsHgTrunkCancel() const { return attribute( ChipAttribute::needsHgTrunkCancel ); }
   bool usesRangeConfig() const { return attribute( ChipAttribute::usesRangeConfig ); }
   bool protocol141IsExtensionHeader() const {
      return attribute( ChipAttribute::protocol141IsExtensionHeader );
   }
   bool udfAltFormA() const { return attribute( ChipAttribute::udfAltFormA ); }
   bool udfAltFormB() const { return attribute( ChipAttribute::udfAltFormB ); }
   bool hasHiGigPorts() const { return attribute( ChipAttribute::hasHiGigPorts ); }
   bool supportsEfpHiGigQualifier() const {
      return attribute( ChipAttribute::supportsEfpHiGigQualifier );
   }
   bool supportsVxlanVniMatch() const { return attribute( ChipAttribute::supportsVxlanVniMatch ); }

 private:
   friend Vesper::Ptr<ChipAttributes> chipAttributesFactory();
   ChipAttributes() = default;
   static constexpr U32 bitOf( ChipAttribute a ) { return static_cast<U32>( a ); }

   U32 bits_ = 0;
};

// A new row with every member false and notifications on.
Vesper::Ptr<ChipAttributes> chipAttributesFactory();

}  // namespace HalyardCentral
