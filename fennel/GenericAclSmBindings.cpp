// GenericAclSm: which ACL instances the configuration asks for, their bindings as they come and
// go, and the teardown of instances nothing uses any more.
#include <string>

#include "fennel/GenericAclSm.h"
#include "fennel/GenericAclSmPass.h"
#include "platform/pylon/ValueText.h"
#include "platform/vesper/Trace.h"
#include "platform/wiring/AgentRecords.h"

VESPER_TRACE_HANDLE( "Fennel::GenericAclSm" )

namespace Fennel {

namespace {

using Acl::AclDirection;
using Acl::AclType;
using Pylon::IntfId;

constexpr AclType allTypes[] = { AclType::ip, AclType::ipv6, AclType::mac };
constexpr AclDirection allDirections[] = { AclDirection::in, AclDirection::out };

IntfPairKey pairOf( IntfId intf ) {
   return IntfPairKey( intf, IntfId() );
}

// Whether `intf` passes straight to another list of the same type and direction.
template <typename DesiredMap>
bool belongsToAnother( const AclKey& key, IntfId intf, const DesiredMap& desired ) {
   for ( const auto& [other, want] : desired ) {
      if ( other != key && other.aclType() == key.aclType() &&
           other.direction() == key.direction() && want.intfs.contains( intf ) ) {
         return true;
      }
   }
   return false;
}

}  // namespace

std::map<AclKey, GenericAclSm::Desired> GenericAclSm::desiredAcls(
    std::vector<std::string>* errors ) const {
   std::map<AclKey, Desired> desired;
   if ( errors ) {
      errors->clear();
   }
   for ( AclType type : allTypes ) {
      for ( AclDirection direction : allDirections ) {
         for ( const auto& binding : intfConfigCli()->intfAcl( type, direction ) ) {
            const IntfId intf = binding.key();
            const auto config = mainConfig()->aclConfig( type, binding.value() );
            if ( !config ) {
               continue;  // a binding may name a list before it is configured
            }
            if ( intf.isSubIntf() ) {
               if ( errors ) {
                  errors->push_back( Pylon::valueToStrep( intf ) + ": " +
                                     Vesper::stringValue( type ) + " access-group " +
                                     binding.value().str() +
                                     ": ACLs on sub-interfaces are not served yet" );
               }
               continue;
            }
            const U64 vlan = intf.isVlan() ? intf.number() : 0;
            const AclKey key( binding.value().str(), type, direction, config->standard(),
                              AclVlanIdOrNone( vlan ) );
            Desired& want = desired[key];
            want.config = config;
            if ( intf.isPortChannel() ) {
               // The chip sees ports: a port-channel's list goes on its members (none: the list
               // stands, bound nowhere, until members come).
               const auto& members = lagInputConfig()->member( intf );
               want.intfs.insert( members.begin(), members.end() );
            } else {
               want.intfs.insert( intf );
            }
         }
      }
   }
   return desired;
}

bool GenericAclSm::configChanged( const AclKey& key, const Desired& want ) const {
   const auto acl = state_.find( key );
   const auto memory = memory_.find( key );
   if ( acl == state_.end() || memory == memory_.end() ) {
      return true;
   }
   const auto& rules = want.config->rule();
   if ( memory->second.refusedRules ) {
      // Refused as it stands: nothing to do until it changes.
      return *memory->second.refusedRules != rules;
   }
   return acl->second.applications == 0 || memory->second.appliedRules != rules;
}

bool GenericAclSm::needsApply( const AclKey& key, const Desired& want ) const {
   const auto acl = state_.find( key );
   return configChanged( key, want ) ||
          ( acl != state_.end() && acl->second.pending != PendingReason::none );
}

void GenericAclSm::tearDown( const AclKey& key, const std::map<AclKey, Desired>& desired,
                             PassWork& work ) {
   FennelHelper::AclHelper& helper = *aclHelper();
   AclState& acl = state_.at( key );
   VTRACE( 1, "GenericAclSm: tearing down " << key );
   if ( blocked_.erase( key ) ) {
      block( acl, false );
   }
   for ( IntfId intf : acl.intfs ) {
      bindingOps().remove( pairOf( intf ), acl.aclData, belongsToAnother( key, intf, desired ) );
      ++work.summary.bindingsRemoved;
   }
   if ( acl.aclData->aclVersion() != AclData::aclVersionNone ) {
      helper.destroyAcl( acl.aclData );
   }
   helper.cleanupAcl( acl.aclData );
   helper.dirtyAclDel( key );
   work.summary.tornDown.push_back( key );
   state_.erase( key );
   memory_.erase( key );
}

void GenericAclSm::removeBindings( const AclKey& key, const Desired& want,
                                   const std::map<AclKey, Desired>& desired, PassWork& work ) {
   const auto it = state_.find( key );
   if ( it == state_.end() ) {
      return;
   }
   AclState& acl = it->second;
   std::vector<IntfId> lost;
   for ( IntfId intf : acl.intfs ) {
      if ( !want.intfs.contains( intf ) ) {
         lost.push_back( intf );
      }
   }
   for ( IntfId intf : lost ) {
      // An answer true means some ACL went dirty; the back-end names it in dirtyAcl, which the
      // pass reads next.
      bindingOps().remove( pairOf( intf ), acl.aclData, belongsToAnother( key, intf, desired ) );
      acl.intfs.erase( intf );
      acl.aclData->activeIntfDel( intf );
      work.lostPorts.insert( key );
      ++work.summary.bindingsRemoved;
   }
}

void GenericAclSm::addBindings( const AclKey& key, const Desired& want, PassWork& work ) {
   AclState& acl = state_[key];
   if ( !acl.aclData ) {
      acl.key = key;
      acl.aclData = aclDataFactory( key );
      acl.status = aclDataStatusFactory( key );
      memory_[key];
   }
   for ( IntfId intf : want.intfs ) {
      if ( acl.intfs.contains( intf ) ) {
         continue;
      }
      acl.intfs.insert( intf );
      acl.aclData->activeIntfIs( intf, true );
      if ( bindingOps().add( pairOf( intf ), acl.aclData, acl.status ) ) {
         work.apply.insert( key );
      }
      work.gainedPorts.insert( key );
      ++work.summary.bindingsAdded;
   }
}

}  // namespace Fennel
