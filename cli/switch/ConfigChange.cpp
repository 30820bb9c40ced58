#include "cli/switch/ConfigChange.h"

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Enum.h"

namespace HalyardCli {

namespace {

using Acl::AclDirection;
using Acl::AclType;

constexpr AclType kTypes[] = { AclType::ip, AclType::ipv6, AclType::mac };
constexpr AclDirection kDirections[] = { AclDirection::in, AclDirection::out };

constexpr const char* kNeedsTeardown =
    "; that needs the generic layer's teardown and rebinding (destroyAcl, removeIntfFromAcl, "
    "updateAclPorts), which are not available in this build yet";

bool sameParams( const Acl::ParamConfig& a, const Acl::ParamConfig& b ) {
   return a.ingressRaclSharing() == b.ingressRaclSharing() &&
          a.ingressMirrorAclKeyWidthMode() == b.ingressMirrorAclKeyWidthMode() &&
          a.ingressIpv6SecurityAclKeyWidthMode() == b.ingressIpv6SecurityAclKeyWidthMode() &&
          a.permitIcmp6TypesConfig() == b.permitIcmp6TypesConfig() &&
          a.permitDuringAclUpdateConfig() == b.permitDuringAclUpdateConfig();
}

std::string listText( const Fennel::AclKey& key ) {
   return Vesper::stringValue( key.aclType() ) + " access-list " + key.aclName();
}

}  // namespace

std::string instanceName( const Fennel::AclKey& key ) {
   std::string name = listText( key ) + " " + Vesper::stringValue( key.direction() );
   if ( key.vlanId().value() != 0 ) {
      name += " on Vlan" + std::to_string( key.vlanId().value() );
   }
   return name;
}

std::map<Fennel::AclKey, AclInstance> aclInstances( const AclSetup& setup ) {
   std::map<Fennel::AclKey, AclInstance> instances;
   for ( AclType type : kTypes ) {
      for ( AclDirection direction : kDirections ) {
         for ( const auto& binding : setup.intfConfig->intfAcl( type, direction ) ) {
            const Acl::AclConfig::Ptr list = setup.config->aclConfig( type, binding.value() );
            if ( !list ) {
               continue;
            }
            const Pylon::IntfId intf = binding.key();
            const U64 vlan = intf.isVlan() ? intf.number() : 0;
            const Fennel::AclKey key( binding.value().str(), type, direction, list->standard(),
                                      Fennel::AclVlanIdOrNone( vlan ) );
            AclInstance& instance = instances[key];
            instance.config = list;
            instance.intfs.insert( intf );
         }
      }
   }
   return instances;
}

std::optional<std::string> unservedBinding( const AclSetup& setup ) {
   for ( AclType type : kTypes ) {
      for ( AclDirection direction : kDirections ) {
         for ( const auto& binding : setup.intfConfig->intfAcl( type, direction ) ) {
            const Pylon::IntfId intf = binding.key();
            if ( !intf.isVlan() && !intf.isSubIntf() ) {
               continue;
            }
            return "interface " + Pylon::valueToStrep( intf ) + ": " + Vesper::stringValue( type ) +
                   " access-group " + binding.value().str() + " " +
                   Vesper::stringValue( direction ) + ": ACLs on " +
                   ( intf.isVlan() ? "VLAN interfaces" : "sub-interfaces" ) +
                   " need the back-end's interface binding (addIntfToAcl), which is not "
                   "available in this build yet";
         }
      }
   }
   return std::nullopt;
}

std::optional<std::string> unsupportedChange( const AclSetup& standing, const AclSetup& next ) {
   const auto before = aclInstances( standing );
   const auto after = aclInstances( next );
   for ( const auto& [key, was] : before ) {
      const auto now = after.find( key );
      if ( now == after.end() ) {
         return instanceName( key ) + " is no longer bound" + kNeedsTeardown;
      }
      if ( now->second.intfs != was.intfs ) {
         return "the interfaces of " + instanceName( key ) + " change" + kNeedsTeardown;
      }
      if ( now->second.config->rule() != was.config->rule() ) {
         return "the rules of " + listText( key ) + ", which stands bound, change" + kNeedsTeardown;
      }
   }
   if ( !before.empty() && !sameParams( *standing.paramConfig, *next.paramConfig ) ) {
      return std::string( "the hardware access-list settings change while ACLs stand" ) +
             kNeedsTeardown;
   }
   return std::nullopt;
}

std::optional<std::string> pendingReapply( const Fennel::GenericAclSm& machine ) {
   for ( const auto& [key, acl] : machine.acls() ) {
      if ( acl.pending != Fennel::PendingReason::none && acl.committed ) {
         return instanceName( key ) + " did not fit (" + acl.errorText +
                "), and the next pass would apply it again, which needs destroyAcl (not "
                "available in this build yet)";
      }
      if ( machine.aclHelper()->dirtyAcl( key ) ) {
         return "the back-end asks for " + instanceName( key ) +
                " to be applied again, which needs destroyAcl (not available in this build yet)";
      }
   }
   return std::nullopt;
}

}  // namespace HalyardCli
