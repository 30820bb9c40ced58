// The ACL-level records of the back-end: what it keeps beside the generic layer's
// Fennel::AclData.
//
//   HalyardAclData  one per ACL key, a member of AclHelper::halyardAclData; the units on
//                   which the ACL is present
//   AclUnitData     one per ACL and unit: its ports there, its port masks, its interface
//                   class and the ports that carry it, and its rule programmer (`common`)
//
// AclHelper owns the HalyardAclData, which owns its AclUnitData, which owns its
// AclCommonUnitData. `aclHelper` of a unit record is a back pointer.
//
// The only behaviour here is AclUnitData's reaction to its own attributes:
//  1. portMask is recomputed whole, through the SDK's bitmap helpers, on every change of
//     activePort, so that it always holds exactly the active ports.
//  2. Setting a valid intfClass writes it, through AclHelper::doSetPortClass, to every active
//     port and records those ports in intfClassAppliedPort; setting it invalid writes class 0
//     to exactly the recorded ports (also those that have left activePort since) and forgets
//     them. A class that is set again unchanged touches no port.
//
// REQUIRES: Shim::sdk_ installed (the bitmap helpers); the activity thread with the activity
// lock held.
#pragma once

#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "acl/HalyardAclCommon.h"
#include "platform/acl/AclTypes.h"
#include "platform/acl/UniqueId.h"
#include "platform/fennel/AclKey.h"
#include "platform/halyard/HalyardAclFeature.h"
#include "platform/halyard/HalyardConstants.h"
#include "platform/shim/BcmTypes.h"
#include "platform/vesper/OwnedCollection.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/Types.h"

namespace Halyard {

class AclHelper;

class AclUnitData : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "Halyard::AclUnitData" )

 public:
   using Ptr = Vesper::Ptr<AclUnitData>;

   // Builds the empty collections, then the (empty) port mask and the empty sub-interface
   // mask, and is initialized.
   AclUnitData( U32 unit, Acl::AclType type, Acl::AclDirection direction,
                Vesper::BackPtr<AclHelper> aclHelper );

   // The constructor parameters after the key, for the keyed creator's name-in-use check.
   static auto ctorParams() {
      return std::make_tuple( Vesper::ctorParam( "_type", &AclUnitData::type ),
                              Vesper::ctorParam( "_direction", &AclUnitData::direction ),
                              Vesper::ctorParam( "_aclHelper", &AclUnitData::aclHelper ) );
   }

   U32 unit() const { return unit_; }
   Acl::AclType type() const { return type_; }
   Acl::AclDirection direction() const { return direction_; }
   Vesper::BackPtr<AclHelper> aclHelper() const { return aclHelper_; }

   // The rule programmer of the ACL on this unit; null until the ACL is pre-created.
   const AclCommonUnitData::Ptr& common() const { return common_; }
   void commonIs( AclCommonUnitData::Ptr common ) { common_ = std::move( common ); }

   // Another ACL type holds VFP on a port of this ACL.
   bool vfpPortConflict() const { return vfpPortConflict_; }
   void vfpPortConflictIs( bool value ) { vfpPortConflict_ = value; }
   // The port mask must be written again at commit.
   bool needsPortUpdate() const { return needsPortUpdate_; }
   void needsPortUpdateIs( bool value ) { needsPortUpdate_ = value; }

   // Ports of this unit on which the ACL is bound and up.
   const KeySet<U32>& activePort() const { return activePort_; }
   bool activePortHas( U32 port ) const { return activePort_.has( port ); }
   // Adds the port; a port already there changes nothing.
   void activePortIs( U32 port );
   // Removes the port; true when it was there.
   bool activePortDel( U32 port );

   // The rule id of the ACL's final drop entry; the empty id until it is made.
   Acl::UniqueId dropEntryAclId() const { return dropEntryAclId_; }
   void dropEntryAclIdIs( Acl::UniqueId aclId ) { dropEntryAclId_ = aclId; }

   // Every active port, and the ports of sub-interfaces.
   const bcm_pbmp_t& portMask() const { return portMask_; }
   const bcm_pbmp_t& subIntfPortMask() const { return subIntfPortMask_; }
   // Replaces the mask of active ports with the ports of the session source interfaces (the
   // mirroring side's port updates), until the next change of activePort recomputes it.
   void portMaskIs( const bcm_pbmp_t& mask ) { portMask_ = mask; }
   void subIntfPortMaskIs( const bcm_pbmp_t& mask ) { subIntfPortMask_ = mask; }
   // One of the masks as text of '0' and '1' for traces and show output: the first four
   // 32-bit words only (128 characters whatever the width of the bitmap), the highest bit of
   // word 3 leftmost and the lowest port rightmost. `subIntf` picks subIntfPortMask.
   std::string getPortMask( bool subIntf ) const;

   HalyardAclFeature feature() const { return feature_; }
   void featureIs( HalyardAclFeature feature ) { feature_ = feature; }

   // The interface class of this ACL on this unit: an 8-bit class kept in 16 signed bits,
   // intfClassInvalid (-1) for none.
   S16 intfClass() const { return intfClass_; }
   bool intfClassValid() const { return intfClass_ != intfClassInvalid; }
   void intfClassIs( S16 intfClass );
   // Ports on which intfClass has been written to the hardware.
   const KeySet<U32>& intfClassAppliedPort() const { return intfClassAppliedPort_; }
   bool intfClassAppliedPortHas( U32 port ) const { return intfClassAppliedPort_.has( port ); }
   // Bookkeeping only: the caller has written the port's class (AclHelper::doSetPortClass).
   void intfClassAppliedPortIs( U32 port ) { intfClassAppliedPort_.set( port, true ); }
   // True when the port was a member.
   bool intfClassAppliedPortDel( U32 port ) {
      return intfClassAppliedPort_.del( port ).has_value();
   }
   void intfClassAppliedPortDelAll() { intfClassAppliedPort_.clear(); }

   // Leave out the link-local multicast entry of the ACL's deny rules.
   bool skipProgrammingLlmEntry() const { return skipProgrammingLlmEntry_; }
   void skipProgrammingLlmEntryIs( bool value ) { skipProgrammingLlmEntry_ = value; }

   bool initialized() const { return initialized_; }

 private:
   void handleInitialized();
   void handleActivePort( U32 port );
   void handleActivePorts();
   void handleIntfClass();

   const U32 unit_;
   const Acl::AclType type_;
   const Acl::AclDirection direction_;
   const Vesper::BackPtr<AclHelper> aclHelper_;
   AclCommonUnitData::Ptr common_;
   bool vfpPortConflict_ = false;
   bool needsPortUpdate_ = false;
   KeySet<U32> activePort_;
   Acl::UniqueId dropEntryAclId_;
   bcm_pbmp_t portMask_;
   bcm_pbmp_t subIntfPortMask_;
   HalyardAclFeature feature_ = aclFeatureSecurity;
   S16 intfClass_ = intfClassInvalid;
   KeySet<U32> intfClassAppliedPort_;
   bool skipProgrammingLlmEntry_ = false;
   bool initialized_ = false;
};

class HalyardAclData : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "Halyard::HalyardAclData" )

 public:
   using Ptr = Vesper::Ptr<HalyardAclData>;
   using UnitDataMap = Vesper::OwnedCollection<U32, AclUnitData>;

   explicit HalyardAclData( Fennel::AclKey key ) : key_( std::move( key ) ) {}

   const Fennel::AclKey& key() const { return key_; }
   const std::string& name() const { return key_.aclName(); }
   Acl::AclType type() const { return key_.aclType(); }
   Acl::AclDirection direction() const { return key_.direction(); }

   // The units where the ACL is present.
   AclUnitData::Ptr unitData( U32 unit ) const { return unitData_.find( unit ); }
   const UnitDataMap& unitData() const { return unitData_; }
   bool unitDataHas( U32 unit ) const { return unitData_.has( unit ); }
   // The unit's record; a new one, with notifications on, when none stands. A standing record
   // made with another type, direction or helper raises Vesper::NameInUseException.
   AclUnitData::Ptr unitDataIs( U32 unit, Acl::AclType type, Acl::AclDirection direction,
                                Vesper::BackPtr<AclHelper> aclHelper );
   AclUnitData::Ptr unitDataDel( U32 unit ) { return unitData_.del( unit ); }
   void unitDataDelAll() { unitData_.delAll(); }

   // Whether the ACL is bound to some port on some unit: true at the first unit with an active
   // port (it does not count them).
   bool oneActivePort() const;

 private:
   const Fennel::AclKey key_;
   UnitDataMap unitData_;
};

}  // namespace Halyard
