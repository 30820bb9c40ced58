// The small enumerations of the ACL configuration: the kind of an ACL, the
// direction it is applied in, and the action of a rule.
//
// Their numbers are stable and cross layers: AclType 0 IPv4, 1 IPv6, 2 MAC;
// AclDirection 0 ingress, 1 egress; Action 0 permit, 1 deny. An Action may
// hold other numbers; the back-end programs nothing for them. Each value has
// a constant (`Acl::ip_`) and a call form (`Acl::ip()`), and text names that
// are the configuration's own words ("ip", "ipv6", "mac", "in", "out",
// "permit", "deny").
#pragma once

#include <ostream>

#include "platform/vesper/Enum.h"
#include "platform/vesper/Types.h"

namespace Acl {

enum class AclType : U32 { ip = 0, ipv6 = 1, mac = 2 };
enum class AclDirection : U32 { in = 0, out = 1 };
enum class Action : U32 { permit = 0, deny = 1 };

inline constexpr AclType ip_ = AclType::ip;
inline constexpr AclType ipv6_ = AclType::ipv6;
inline constexpr AclType mac_ = AclType::mac;
inline constexpr AclDirection in_ = AclDirection::in;
inline constexpr AclDirection out_ = AclDirection::out;
inline constexpr Action permit_ = Action::permit;
inline constexpr Action deny_ = Action::deny;

constexpr AclType ip() {
   return ip_;
}
constexpr AclType ipv6() {
   return ipv6_;
}
constexpr AclType mac() {
   return mac_;
}
constexpr AclDirection in() {
   return in_;
}
constexpr AclDirection out() {
   return out_;
}
constexpr Action permit() {
   return permit_;
}
constexpr Action deny() {
   return deny_;
}

inline constexpr Vesper::EnumName<AclType> aclTypeNames[] = {
    { AclType::ip, "ip" }, { AclType::ipv6, "ipv6" }, { AclType::mac, "mac" } };
constexpr Vesper::EnumNames<AclType> vesperEnumNames( AclType ) {
   return { "Acl::AclType", aclTypeNames };
}

inline constexpr Vesper::EnumName<AclDirection> aclDirectionNames[] = {
    { AclDirection::in, "in" }, { AclDirection::out, "out" } };
constexpr Vesper::EnumNames<AclDirection> vesperEnumNames( AclDirection ) {
   return { "Acl::AclDirection", aclDirectionNames };
}

inline constexpr Vesper::EnumName<Action> actionNames[] = { { Action::permit, "permit" },
                                                            { Action::deny, "deny" } };
constexpr Vesper::EnumNames<Action> vesperEnumNames( Action ) {
   return { "Acl::Action", actionNames };
}

inline std::ostream& operator<<( std::ostream& os, AclType v ) {
   return os << Vesper::stringValue( v );
}
inline std::ostream& operator<<( std::ostream& os, AclDirection v ) {
   return os << Vesper::stringValue( v );
}
inline std::ostream& operator<<( std::ostream& os, Action v ) {
   return os << Vesper::stringValue( v );
}

}  // namespace Acl
