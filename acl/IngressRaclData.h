// IngressRaclData: the store of shared router ACL identifiers, one per AclHelper, which
// holds it by counted pointer; its back pointer to the helper is not counted.
#pragma once

#include "platform/vesper/Ptr.h"

namespace Halyard {

class AclHelper;

// The store of shared router ACL identifiers. Only its owner is here so far: the raclId
// spaces, the per-VLAN classes and the free lists are not written yet.
class IngressRaclData : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "Halyard::IngressRaclData" )

 public:
   using Ptr = Vesper::Ptr<IngressRaclData>;

   explicit IngressRaclData( Vesper::BackPtr<AclHelper> aclHelper ) : aclHelper_( aclHelper ) {}

   Vesper::BackPtr<AclHelper> aclHelper() const { return aclHelper_; }

 private:
   const Vesper::BackPtr<AclHelper> aclHelper_;
};

// A new store with notifications off; its owner turns them on.
IngressRaclData::Ptr ingressRaclDataFactory( Vesper::BackPtr<AclHelper> aclHelper );

}  // namespace Halyard
