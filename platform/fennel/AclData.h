// The generic layer's record of one ACL instance, as the back-end sees it.
//
//   key                the ACL's identity; never changes (name, type, direction,
//                      standard, VLAN and group read through it)
//   aclPriority        orders the entries of different ACLs in one TCAM group: a
//                      higher number gives its rules higher priority
//   aclVersion         the generation of configuration last handed down for this
//                      ACL; aclVersionNone (all ones) until the generic layer gives
//                      it one, and then the back-end has nothing to tear down
//   aclConfig          the access list being applied; null until then
//   installed          the generic layer has committed the ACL (all its units)
//   activeIntf         interfaces that use the ACL -> whether the binding is in
//                      force; activeIntfCount() counts the members
//   deferClassIdUpdate a change of a VLAN's class for this ACL must wait until the
//                      VLAN is blocked
//
// A counted object that the generic layer owns and hands to the back-end's
// operations; the back-end only reads it. It has no notifications: nothing
// reacts to it. Two records compare equal when every attribute but the
// identity of the object is equal.
//
// Threads: activity thread.
#pragma once

#include <string>
#include <utility>

#include "platform/acl/AclConfig.h"
#include "platform/fennel/AclKey.h"
#include "platform/pylon/IntfId.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/Types.h"

namespace Fennel {

class AclData : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "Fennel::AclData" )

 public:
   using Ptr = Vesper::Ptr<AclData>;
   using PtrConst = Vesper::Ptr<const AclData>;
   using ActiveIntfMap = Vesper::HashMap2018<Pylon::IntfId, bool>;

   static constexpr U32 aclVersionNone = 0xFFFFFFFF;

   AclData() = default;
   explicit AclData( AclKey key, U32 aclPriority = 0 )
       : key_( std::move( key ) ), aclPriority_( aclPriority ) {}

   const AclKey& key() const { return key_; }
   const std::string& aclName() const { return key_.aclName(); }
   Acl::AclType aclType() const { return key_.aclType(); }
   Acl::AclDirection direction() const { return key_.direction(); }
   AclVlanIdOrNone vlanId() const { return key_.vlanId(); }

   U32 aclPriority() const { return aclPriority_; }
   void aclPriorityIs( U32 priority ) { aclPriority_ = priority; }

   U32 aclVersion() const { return aclVersion_; }
   void aclVersionIs( U32 version ) { aclVersion_ = version; }

   const Acl::AclConfig::PtrConst& aclConfig() const { return aclConfig_; }
   void aclConfigIs( Acl::AclConfig::PtrConst config ) { aclConfig_ = std::move( config ); }

   bool installed() const { return installed_; }
   void installedIs( bool installed ) { installed_ = installed; }

   // false when absent.
   bool activeIntf( Pylon::IntfId intf ) const;
   const ActiveIntfMap& activeIntf() const { return activeIntf_; }
   bool activeIntfHas( Pylon::IntfId intf ) const { return activeIntf_.has( intf ); }
   void activeIntfIs( Pylon::IntfId intf, bool active ) { activeIntf_.set( intf, active ); }
   void activeIntfDel( Pylon::IntfId intf ) { activeIntf_.del( intf ); }
   void activeIntfDelAll() { activeIntf_.clear(); }
   U32 activeIntfCount() const { return static_cast<U32>( activeIntf_.size() ); }

   bool deferClassIdUpdate() const { return deferClassIdUpdate_; }
   void deferClassIdUpdateIs( bool defer ) { deferClassIdUpdate_ = defer; }

   friend bool operator==( const AclData& a, const AclData& b );

 private:
   AclKey key_;
   U32 aclPriority_ = 0;
   U32 aclVersion_ = aclVersionNone;
   Acl::AclConfig::PtrConst aclConfig_;
   bool installed_ = false;
   ActiveIntfMap activeIntf_;
   bool deferClassIdUpdate_ = false;
};

// A new record with notifications on.
AclData::Ptr aclDataFactory( AclKey key, U32 aclPriority = 0 );

}  // namespace Fennel
