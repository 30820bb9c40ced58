// The capability flags of an ACL back-end: what it can do, as it tells the
// generic ACL layer. FennelHelper::AclHelper declares one boolean attribute
// per flag, with the accessors `flag()` and `flagIs( bool )`, all made from
// the list below; the back-end sets them in its hardware bring-up, and the
// generic layer reads them afterwards to decide what it may hand down.
//
// Defaults: a back-end claims nothing it has not said, so every flag starts
// false, except the two that every back-end serves by definition, ingress
// MAC ACLs and ingress IPv4 ACLs on ports (macAclSupported,
// ipIngressAclSupported). MPLS label matching (aclMplsSupported) must be
// claimed like any other feature.
//
// Flags that depend on the chips are plain flags, not maps by unit: the
// back-end evaluates its condition unit by unit and sets the flag as soon as
// one unit meets it, never clearing it. The generic layer's questions carry
// no unit (getPermitDuringAclUpdate() among them), so a system answers as one.
#pragma once

#include <cstddef>
#include <iterator>
#include <ostream>

#include "platform/vesper/Enum.h"
#include "platform/vesper/Types.h"

// X( name, default ), in the order of the enumeration AclCapability.
#define FENNEL_ACL_CAPABILITIES( X )                               \
   /* Rule features and ACL kinds. */                              \
   X( revertIncompleteAclSupported, false )                        \
   X( routerAclSupported, false )                                  \
   X( aclDscpSupported, false )                                    \
   X( ecnFilterSupported, false )                                  \
   X( aclEcnSupported, false )                                     \
   X( aclIpLenMatchSupported, false )                              \
   X( allowIpLenFilter, false )                                    \
   X( macEgressAclSupported, false )                               \
   X( ipEgressAclSupported, false )                                \
   X( ip6EgressAclSupported, false )                               \
   X( routerEgressAclSupported, false )                            \
   X( ip6RouterEgressAclSupported, false )                         \
   X( subIntfAclSupported, false )                                 \
   X( aclCountersSupported, false )                                \
   X( dpIp6AclFullMaskSupported, false )                           \
   X( ip6AclSupported, false )                                     \
   X( aclTcSupported, false )                                      \
   X( mirroringAclSupported, false )                               \
   X( aclLoggingSupported, false )                                 \
   X( routerAclLoggingSupported, false )                           \
   X( configurableImplicitIcmp6RulesSupported, false )             \
   X( nonContiguousIpMaskSupported, false )                        \
   /* Behaviour during updates; see getPermitDuringAclUpdate(). */ \
   X( permitDuringAclUpdate, false )                               \
   X( defaultActionDuringAclUpdatePermit, false )                  \
   /* Sharing of router ACLs between VLANs. */                     \
   X( ingressRaclSharingSupported, false )                         \
   /* Chip-dependent features. */                                  \
   X( aclPayloadSupported, false )                                 \
   X( dpIpv4Ip6SecurityAclBankSharingSupported, false )            \
   X( dpIpv4Ip6MirroringAclBankSharingSupported, false )           \
   X( dpIpv4Ip6QosAclBankSharingSupported, false )                 \
   X( dpIpv6SecurityAclKeyWidthModeSupported, false )              \
   X( dpIpv6QosAclKeyWidthModeSupported, false )                   \
   X( dpMirrorAclKeyWidthModeSupported, false )                    \
   X( aclVxlanSupported, false )                                   \
   /* Kinds the generic layer assumes of every back-end. */        \
   X( macAclSupported, true )                                      \
   X( ipIngressAclSupported, true )                                \
   X( aclMplsSupported, false )

namespace FennelHelper {

enum class AclCapability : U32 {
#define FENNEL_CAPABILITY_ENUMERATOR( name, defaultValue ) name,
   FENNEL_ACL_CAPABILITIES( FENNEL_CAPABILITY_ENUMERATOR )
#undef FENNEL_CAPABILITY_ENUMERATOR
};

inline constexpr Vesper::EnumName<AclCapability> aclCapabilityNames[] = {
#define FENNEL_CAPABILITY_NAME( name, defaultValue ) { AclCapability::name, #name },
    FENNEL_ACL_CAPABILITIES( FENNEL_CAPABILITY_NAME )
#undef FENNEL_CAPABILITY_NAME
};
constexpr Vesper::EnumNames<AclCapability> vesperEnumNames( AclCapability ) {
   return { "FennelHelper::AclCapability", aclCapabilityNames };
}

inline constexpr size_t aclCapabilityCount = std::size( aclCapabilityNames );

// The value of each flag before anyone sets it.
constexpr bool aclCapabilityDefault( AclCapability capability ) {
   switch ( capability ) {
#define FENNEL_CAPABILITY_DEFAULT( name, defaultValue ) \
   case AclCapability::name:                            \
      return defaultValue;
      FENNEL_ACL_CAPABILITIES( FENNEL_CAPABILITY_DEFAULT )
#undef FENNEL_CAPABILITY_DEFAULT
   }
   return false;
}

inline std::ostream& operator<<( std::ostream& os, AclCapability capability ) {
   return os << Vesper::stringValue( capability );
}

}  // namespace FennelHelper

namespace Fennel {

// Which ICMPv6 types the back-end permits implicitly at the end of each IPv6
// ACL (the installImplicitIcmp6Rules attribute). Numbers are stable.
enum class Ip6DefaultIcmp6TypesSupported : U32 {
   none = 0,          // the back-end installs no implicit ICMPv6 permit
   defaultTypes = 1,  // it permits ICMPv6 ahead of the final deny (the default types)
};

inline constexpr Vesper::EnumName<Ip6DefaultIcmp6TypesSupported>
    ip6DefaultIcmp6TypesSupportedNames[] = {
        { Ip6DefaultIcmp6TypesSupported::none, "none" },
        { Ip6DefaultIcmp6TypesSupported::defaultTypes, "defaultTypes" } };
constexpr Vesper::EnumNames<Ip6DefaultIcmp6TypesSupported> vesperEnumNames(
    Ip6DefaultIcmp6TypesSupported ) {
   return { "Fennel::Ip6DefaultIcmp6TypesSupported", ip6DefaultIcmp6TypesSupportedNames };
}

inline std::ostream& operator<<( std::ostream& os, Ip6DefaultIcmp6TypesSupported v ) {
   return os << Vesper::stringValue( v );
}

}  // namespace Fennel
