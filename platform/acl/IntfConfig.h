// Which ACL each interface uses, per ACL type and direction: the
// "ip|ipv6|mac access-group NAME in|out" lines of the interfaces.
//
//   intfAcl   (type, direction, interface) -> ACL name. An interface has at
//             most one ACL per type and direction; absent reads as the empty
//             name. The interface may be a front-panel port, a port-channel,
//             a sub-interface or a VLAN interface (a router ACL).
//
// The ACL named is looked up in Acl::Config by type and name; a binding may
// name a list that is not (yet) configured.
//
// Each setter tells the notifiees once per real change, with the binding's
// type, direction and interface. Setting the name that stands is silent.
//
// Threads: activity thread.
#pragma once

#include <array>

#include "platform/acl/AclTypes.h"
#include "platform/pylon/IntfId.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/String.h"

namespace Acl {

class IntfConfig : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Acl::IntfConfig" )

 public:
   using Ptr = Vesper::Ptr<IntfConfig>;
   using PtrConst = Vesper::Ptr<const IntfConfig>;
   using IntfAclMap = Vesper::HashMap2018<Pylon::IntfId, Vesper::Name>;

   class NotifieeConst : public Vesper::NotifieeBase<IntfConfig> {
    public:
      virtual void onIntfAcl( AclType, AclDirection, Pylon::IntfId ) {}
   };

   // The ACL bound to `intf` for this type and direction; empty when none.
   Vesper::Name intfAcl( AclType type, AclDirection direction, Pylon::IntfId intf ) const;
   // The bindings of one type and direction.
   const IntfAclMap& intfAcl( AclType type, AclDirection direction ) const;
   bool intfAclHas( AclType type, AclDirection direction, Pylon::IntfId intf ) const;
   // REQUIRES: `aclName` is not empty (intfAclDel() removes a binding).
   void intfAclIs( AclType type, AclDirection direction, Pylon::IntfId intf,
                   const Vesper::Name& aclName );
   void intfAclDel( AclType type, AclDirection direction, Pylon::IntfId intf );
   // Removes every binding, type by type and ingress before egress, each in walk order.
   void intfAclDelAll();

 private:
   friend Ptr intfConfigFactory();
   IntfConfig() = default;
   // REQUIRES: a valid type and direction.
   static size_t mapIndex( AclType type, AclDirection direction );

   // Indexed by type * 2 + direction.
   std::array<IntfAclMap, 6> intfAcl_;
};

// A new record without bindings, with notifications on.
IntfConfig::Ptr intfConfigFactory();

}  // namespace Acl
