// IngressRaclData: the store of shared router ACL identifiers.
#include "acl/IngressRaclData.h"

namespace Halyard {

IngressRaclData::Ptr ingressRaclDataFactory( Vesper::BackPtr<AclHelper> aclHelper ) {
   return IngressRaclData::Ptr( new IngressRaclData( aclHelper ) );
}

}  // namespace Halyard
