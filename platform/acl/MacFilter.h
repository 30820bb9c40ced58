// The match part of a MAC rule, as configured.
//
// Defaults match every packet: addresses and masks all zero (a zero mask
// matches any address), proto() -1 (any EtherType; 0 is a match on
// EtherType 0), no VLAN, MPLS or payload term.
//
// Invariants: MPLS labels are at most 0xFFFFF (20 bits); a larger value
// throws Vesper::RangeException "MacFilter::mplsLabel < 0 or > 0xFFFFF not
// allowed" (or "... ::mplsInnerLabel ...").
#pragma once

#include "platform/acl/PayloadSpec.h"
#include "platform/pylon/EthAddr.h"
#include "platform/vesper/Types.h"

namespace Acl {

class MacFilter {
 public:
   static constexpr U32 maxMplsLabel = 0xFFFFF;
   static constexpr S32 protoAny = -1;

   const Pylon::EthAddr& source() const { return source_; }
   const Pylon::EthAddr& sourceMask() const { return sourceMask_; }
   void sourceIs( const Pylon::EthAddr& addr, const Pylon::EthAddr& mask ) {
      source_ = addr;
      sourceMask_ = mask;
   }
   const Pylon::EthAddr& destination() const { return destination_; }
   const Pylon::EthAddr& destinationMask() const { return destinationMask_; }
   void destinationIs( const Pylon::EthAddr& addr, const Pylon::EthAddr& mask ) {
      destination_ = addr;
      destinationMask_ = mask;
   }

   // EtherType, 0 to 0xFFFF, or protoAny.
   S32 proto() const { return proto_; }
   void protoIs( S32 proto ) { proto_ = proto; }

   // Outer and inner VLAN; a mask of 0 means no term.
   U16 vlan() const { return vlan_; }
   U16 vlanMask() const { return vlanMask_; }
   void vlanIs( U16 vlan, U16 mask ) {
      vlan_ = vlan;
      vlanMask_ = mask;
   }
   U16 innerVlan() const { return innerVlan_; }
   U16 innerVlanMask() const { return innerVlanMask_; }
   void innerVlanIs( U16 vlan, U16 mask ) {
      innerVlan_ = vlan;
      innerVlanMask_ = mask;
   }

   // Outer and inner MPLS labels; matchMpls...() says that the rule
   // matches on the label.
   U32 mplsLabel() const { return mplsLabel_; }
   bool matchMplsLabel() const { return matchMplsLabel_; }
   void mplsLabelIs( S64 label );
   void mplsLabelDel();
   U32 mplsInnerLabel() const { return mplsInnerLabel_; }
   bool matchMplsInnerLabel() const { return matchMplsInnerLabel_; }
   void mplsInnerLabelIs( S64 label );
   void mplsInnerLabelDel();

   const PayloadSpec& payload() const { return payload_; }
   void payloadIs( const PayloadSpec& payload ) { payload_ = payload; }

   friend bool operator==( const MacFilter&, const MacFilter& ) = default;

 private:
   Pylon::EthAddr source_;
   Pylon::EthAddr sourceMask_;
   Pylon::EthAddr destination_;
   Pylon::EthAddr destinationMask_;
   S32 proto_ = protoAny;
   U16 vlan_ = 0;
   U16 vlanMask_ = 0;
   U16 innerVlan_ = 0;
   U16 innerVlanMask_ = 0;
   U32 mplsLabel_ = 0;
   bool matchMplsLabel_ = false;
   U32 mplsInnerLabel_ = 0;
   bool matchMplsInnerLabel_ = false;
   PayloadSpec payload_;
};

}  // namespace Acl
