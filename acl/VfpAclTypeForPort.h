// VfpAclTypeForPort: per unit, which ACL type owns the VFP lookup of each port. The VFP
// stage serves one ACL type per port, so the first type to claim a port wins it and a second
// type bound there is in conflict until the claim goes (AclHelper::precreateAcl).
//
// A member of AclHelper::vfpAclTypeForUnit, keyed and named by its unit. Ports are keyed by
// interface name. Notifiees hear of each change of a member, never of a write that changes
// nothing.
#pragma once

#include <optional>
#include "platform/acl/AclTypes.h"
#include "platform/vesper/Entity.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/String.h"
#include "platform/vesper/Types.h"

namespace Halyard {

// Which ACL type owns the VFP lookup of each port of one unit.
class VfpAclTypeForPort : public Vesper::NotifierBase<Vesper::Entity> {
   VESPER_FWK_TYPE( "Halyard::VfpAclTypeForPort" )

 public:
   using Ptr = Vesper::Ptr<VfpAclTypeForPort>;
   using TypeMap = Vesper::HashMap2018<Vesper::String, Acl::AclType>;

   class NotifieeConst : public Vesper::NotifieeBase<VfpAclTypeForPort> {
    public:
      virtual void onVfpAclTypeForPort( const Vesper::String& /*port*/ ) {}
   };

   // Named by its unit's number.
   explicit VfpAclTypeForPort( U32 unit );

   U32 unit() const { return unit_; }

   // By port name; nothing when no type holds the port.
   std::optional<Acl::AclType> vfpAclTypeForPort( const Vesper::String& port ) const;
   const TypeMap& vfpAclTypeForPort() const { return vfpAclTypeForPort_; }
   bool vfpAclTypeForPortHas( const Vesper::String& port ) const {
      return vfpAclTypeForPort_.has( port );
   }
   // Adds or changes the member; notifies only on a change.
   void vfpAclTypeForPortIs( const Vesper::String& port, Acl::AclType type );
   // Removes the member and notifies; the type it held, or nothing.
   std::optional<Acl::AclType> vfpAclTypeForPortDel( const Vesper::String& port );
   void vfpAclTypeForPortDelAll();

 private:
   const U32 unit_;
   TypeMap vfpAclTypeForPort_;
};

}  // namespace Halyard
