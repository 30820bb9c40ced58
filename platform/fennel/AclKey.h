// The identity of one ACL instance: its name, type, direction, whether it
// is a standard ACL, the VLAN of a router ACL, and the group of a shared ACL.
//
// Ordering is by name, then type, direction, standard, VLAN and group.
// Text:
//   Value('Fennel::AclKey', ** {'aclName': 'acl1', 'aclType': ip,
//         'direction': in, 'standard': False, 'vlanId': 0,
//         'aclGroup': 'aclGroupDefault'})
// (one line), which strepToValue parses back.
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "platform/acl/AclTypes.h"
#include "platform/fennel/AclVlanIdOrNone.h"
#include "platform/pylon/ValueText.h"
#include "platform/vesper/Types.h"

namespace Fennel {

class AclKey {
 public:
   // The group of ACLs that are not in a group of their own; shared router
   // ACLs are in it.
   static constexpr std::string_view aclGroupDefault = "aclGroupDefault";

   AclKey() = default;
   AclKey( std::string aclName, Acl::AclType aclType, Acl::AclDirection direction,
           bool standard = false, AclVlanIdOrNone vlanId = AclVlanIdOrNone(),
           std::string aclGroup = std::string( aclGroupDefault ) );

   const std::string& aclName() const { return aclName_; }
   Acl::AclType aclType() const { return aclType_; }
   Acl::AclDirection direction() const { return direction_; }
   bool standard() const { return standard_; }
   AclVlanIdOrNone vlanId() const { return vlanId_; }
   const std::string& aclGroup() const { return aclGroup_; }
   U32 hash() const;

   friend bool operator==( const AclKey&, const AclKey& ) = default;
   friend std::strong_ordering operator<=>( const AclKey&, const AclKey& ) = default;

 private:
   std::string aclName_;
   Acl::AclType aclType_ = Acl::AclType::ip;
   Acl::AclDirection direction_ = Acl::AclDirection::in;
   bool standard_ = false;
   AclVlanIdOrNone vlanId_;
   std::string aclGroup_{ aclGroupDefault };
};

std::string valueToStrep( const AclKey& key );
AclKey parseStrep( std::string_view text, Pylon::ValueType<AclKey> );
std::ostream& operator<<( std::ostream& os, const AclKey& key );

}  // namespace Fennel
