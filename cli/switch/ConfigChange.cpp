#include "cli/switch/ConfigChange.h"

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Enum.h"

namespace HalyardCli {

namespace {

using Acl::AclDirection;
using Acl::AclType;

constexpr AclType kTypes[] = { AclType::ip, AclType::ipv6, AclType::mac };
constexpr AclDirection kDirections[] = { AclDirection::in, AclDirection::out };

constexpr const char* kBlockingNotServed =
    " while 'hardware access-list update default-result deny' asks for its interfaces to be "
    "blocked during the update (blockIntf), which the back-end does not serve yet";

bool blocksDuringUpdates( const Acl::ParamConfig& params ) {
   return params.permitDuringAclUpdateConfig() == Acl::PermitDuringAclUpdateConfig::deny;
}

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
                   Vesper::stringValue( direction ) + ": " +
                   ( intf.isVlan() ? "router ACLs on VLAN interfaces are not served by the "
                                     "back-end in this build yet"
                                   : "ACLs on sub-interfaces are not served by the generic "
                                     "layer in this build yet" );
         }
      }
   }
   return std::nullopt;
}

std::optional<std::string> unsupportedChange( const AclSetup& standing, const AclSetup& next ) {
   const auto before = aclInstances( standing );
   if ( before.empty() ) {
      return std::nullopt;
   }
   if ( !sameParams( *standing.paramConfig, *next.paramConfig ) ) {
      return std::string(
          "the hardware access-list settings change while ACLs stand, and the "
          "generic layer does not apply standing lists again for that yet" );
   }
   if ( !blocksDuringUpdates( *next.paramConfig ) ) {
      return std::nullopt;
   }
   const auto after = aclInstances( next );
   for ( const auto& [key, was] : before ) {
      const auto now = after.find( key );
      if ( now != after.end() && ( now->second.intfs != was.intfs ||
                                   now->second.config->rule() != was.config->rule() ) ) {
         return instanceName( key ) + " would be applied again" + kBlockingNotServed;
      }
   }
   return std::nullopt;
}

std::optional<std::string> pendingReapply( const Fennel::GenericAclSm& machine,
                                           const Acl::ParamConfig& params ) {
   if ( !blocksDuringUpdates( params ) ) {
      return std::nullopt;
   }
   for ( const auto& [key, acl] : machine.acls() ) {
      const bool again =
          acl.pending != Fennel::PendingReason::none || machine.aclHelper()->dirtyAcl( key );
      if ( again && acl.committed ) {
         return instanceName( key ) + " did not fit and would be applied again" +
                kBlockingNotServed;
      }
   }
   return std::nullopt;
}

}  // namespace HalyardCli
