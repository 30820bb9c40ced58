// The "hardware access-list" settings of the switch: how ACLs are laid out
// in the TCAM and how they behave while they change.
//
//   ingressRaclSharing                  ingress router ACLs on many VLANs share one set
//                                       of entries (false: one set per VLAN)
//   ingressMirrorAclKeyWidthMode        key width of the ingress mirroring group; narrow
//                                       keys have no address or L4 port field
//   ingressIpv6SecurityAclKeyWidthMode  key width of ingress IPv6 ACLs; narrow keys match
//                                       the upper 64 bits of addresses only
//   permitIcmp6TypesConfig              which ICMPv6 packets an IPv6 ACL lets pass ahead of
//                                       its final deny
//   permitDuringAclUpdateConfig         what traffic meets while an ACL is rewritten; the
//                                       back-end's answer comes from
//                                       FennelHelper::AclHelper::getPermitDuringAclUpdate()
//
// Each setter tells the notifiees once per real change. The sharing and key
// width settings are fixed at the agent's start: changing them later
// restarts the forwarding agent.
//
// Threads: activity thread.
#pragma once

#include <ostream>

#include "platform/vesper/Enum.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/Types.h"

namespace Acl {

// The key width of a TCAM group that can be configured narrower than the
// platform's. Numbers are stable: the back-end compares with 1.
enum class AclKeyWidthMode : U32 { platformDefault = 0, narrow = 1 };

// Which ICMPv6 packets an IPv6 ACL lets pass whatever its rules say, so that
// neighbour discovery keeps working. Numbers are stable.
enum class PermitIcmp6TypesConfig : U32 {
   none = 0,               // nothing: the rules decide alone
   defaultTypes = 1,       // the ACL's closing entries permit ICMPv6 ahead of the final deny
   neighborDiscovery = 2,  // the generic layer adds permit rules for the discovery types
};

// What traffic meets on an interface while its ACL is rewritten.
enum class PermitDuringAclUpdateConfig : U32 {
   platformDefault = 0,  // the back-end's default for its chips
   permit = 1,           // passes, where the back-end can do that
   deny = 2,             // is dropped
};

inline constexpr Vesper::EnumName<AclKeyWidthMode> aclKeyWidthModeNames[] = {
    { AclKeyWidthMode::platformDefault, "platformDefault" },
    { AclKeyWidthMode::narrow, "narrow" } };
constexpr Vesper::EnumNames<AclKeyWidthMode> vesperEnumNames( AclKeyWidthMode ) {
   return { "Acl::AclKeyWidthMode", aclKeyWidthModeNames };
}

inline constexpr Vesper::EnumName<PermitIcmp6TypesConfig> permitIcmp6TypesConfigNames[] = {
    { PermitIcmp6TypesConfig::none, "none" },
    { PermitIcmp6TypesConfig::defaultTypes, "defaultTypes" },
    { PermitIcmp6TypesConfig::neighborDiscovery, "neighborDiscovery" } };
constexpr Vesper::EnumNames<PermitIcmp6TypesConfig> vesperEnumNames( PermitIcmp6TypesConfig ) {
   return { "Acl::PermitIcmp6TypesConfig", permitIcmp6TypesConfigNames };
}

inline constexpr Vesper::EnumName<PermitDuringAclUpdateConfig> permitDuringAclUpdateConfigNames[] =
    { { PermitDuringAclUpdateConfig::platformDefault, "platformDefault" },
      { PermitDuringAclUpdateConfig::permit, "permit" },
      { PermitDuringAclUpdateConfig::deny, "deny" } };
constexpr Vesper::EnumNames<PermitDuringAclUpdateConfig> vesperEnumNames(
    PermitDuringAclUpdateConfig ) {
   return { "Acl::PermitDuringAclUpdateConfig", permitDuringAclUpdateConfigNames };
}

inline std::ostream& operator<<( std::ostream& os, AclKeyWidthMode v ) {
   return os << Vesper::stringValue( v );
}
inline std::ostream& operator<<( std::ostream& os, PermitIcmp6TypesConfig v ) {
   return os << Vesper::stringValue( v );
}
inline std::ostream& operator<<( std::ostream& os, PermitDuringAclUpdateConfig v ) {
   return os << Vesper::stringValue( v );
}

class ParamConfig : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Acl::ParamConfig" )

 public:
   using Ptr = Vesper::Ptr<ParamConfig>;
   using PtrConst = Vesper::Ptr<const ParamConfig>;

   class NotifieeConst : public Vesper::NotifieeBase<ParamConfig> {
    public:
      virtual void onIngressRaclSharing() {}
      virtual void onIngressMirrorAclKeyWidthMode() {}
      virtual void onIngressIpv6SecurityAclKeyWidthMode() {}
      virtual void onPermitIcmp6TypesConfig() {}
      virtual void onPermitDuringAclUpdateConfig() {}
   };

   bool ingressRaclSharing() const { return ingressRaclSharing_; }
   void ingressRaclSharingIs( bool sharing );
   AclKeyWidthMode ingressMirrorAclKeyWidthMode() const { return ingressMirrorAclKeyWidthMode_; }
   void ingressMirrorAclKeyWidthModeIs( AclKeyWidthMode mode );
   AclKeyWidthMode ingressIpv6SecurityAclKeyWidthMode() const {
      return ingressIpv6SecurityAclKeyWidthMode_;
   }
   void ingressIpv6SecurityAclKeyWidthModeIs( AclKeyWidthMode mode );
   PermitIcmp6TypesConfig permitIcmp6TypesConfig() const { return permitIcmp6TypesConfig_; }
   void permitIcmp6TypesConfigIs( PermitIcmp6TypesConfig config );
   PermitDuringAclUpdateConfig permitDuringAclUpdateConfig() const {
      return permitDuringAclUpdateConfig_;
   }
   void permitDuringAclUpdateConfigIs( PermitDuringAclUpdateConfig config );

 private:
   friend Ptr paramConfigFactory();
   ParamConfig() = default;

   // Defaults of a switch with no "hardware access-list" lines: no sharing by
   // configuration, platform key widths, ICMPv6 kept working by the closing
   // entries of each IPv6 ACL, and the platform's behaviour during updates.
   bool ingressRaclSharing_ = false;
   AclKeyWidthMode ingressMirrorAclKeyWidthMode_ = AclKeyWidthMode::platformDefault;
   AclKeyWidthMode ingressIpv6SecurityAclKeyWidthMode_ = AclKeyWidthMode::platformDefault;
   PermitIcmp6TypesConfig permitIcmp6TypesConfig_ = PermitIcmp6TypesConfig::defaultTypes;
   PermitDuringAclUpdateConfig permitDuringAclUpdateConfig_ =
       PermitDuringAclUpdateConfig::platformDefault;
};

// A new record with the defaults above and notifications on.
ParamConfig::Ptr paramConfigFactory();

}  // namespace Acl
