#include "cli/switch/AclSwitch.h"

#include <algorithm>
#include <vector>

namespace HalyardCli {

namespace {

using Acl::AclDirection;
using Acl::AclType;

constexpr AclType kTypes[] = { AclType::ip, AclType::ipv6, AclType::mac };
constexpr AclDirection kDirections[] = { AclDirection::in, AclDirection::out };

// Passes of one apply at most: the first applies, the second programs as blocks the ranges
// that found no checker; the others are margin, as the machine's own settle() allows.
constexpr U32 kMaxPasses = 4;

// Lists and rules of `from` into `to`, touching only what differs, so that the records tell
// their watchers of real changes only.
void copyLists( const Acl::Config& from, Acl::Config& to ) {
   for ( AclType type : kTypes ) {
      std::vector<Vesper::Name> gone;
      for ( const auto& member : to.aclConfig( type ) ) {
         if ( !from.aclConfigHas( type, member.key() ) ) {
            gone.push_back( member.key() );
         }
      }
      for ( const Vesper::Name& name : gone ) {
         to.aclConfigDel( type, name );
      }
      for ( const auto& member : from.aclConfig( type ) ) {
         const Acl::AclConfig& list = *member.value();
         const Acl::AclConfig::Ptr target = to.aclConfigIs( type, member.key() );
         target->standardIs( list.standard() );
         std::vector<U32> goneRules;
         for ( const auto& [seq, rule] : target->rule() ) {
            if ( !list.ruleHas( seq ) ) {
               goneRules.push_back( seq );
            }
         }
         for ( U32 seq : goneRules ) {
            target->ruleDel( seq );
         }
         for ( const auto& [seq, rule] : list.rule() ) {
            target->ruleIs( seq, rule );
         }
      }
   }
}

void copyBindings( const Acl::IntfConfig& from, Acl::IntfConfig& to ) {
   for ( AclType type : kTypes ) {
      for ( AclDirection direction : kDirections ) {
         std::vector<Pylon::IntfId> gone;
         for ( const auto& binding : to.intfAcl( type, direction ) ) {
            if ( !from.intfAclHas( type, direction, binding.key() ) ) {
               gone.push_back( binding.key() );
            }
         }
         for ( Pylon::IntfId intf : gone ) {
            to.intfAclDel( type, direction, intf );
         }
         for ( const auto& binding : from.intfAcl( type, direction ) ) {
            to.intfAclIs( type, direction, binding.key(), binding.value() );
         }
      }
   }
}

void copyParams( const Acl::ParamConfig& from, Acl::ParamConfig& to ) {
   to.ingressRaclSharingIs( from.ingressRaclSharing() );
   to.ingressMirrorAclKeyWidthModeIs( from.ingressMirrorAclKeyWidthMode() );
   to.ingressIpv6SecurityAclKeyWidthModeIs( from.ingressIpv6SecurityAclKeyWidthMode() );
   to.permitIcmp6TypesConfigIs( from.permitIcmp6TypesConfig() );
   to.permitDuringAclUpdateConfigIs( from.permitDuringAclUpdateConfig() );
}

}  // namespace

AclSwitch::MachineRegistration::MachineRegistration() {
   Fennel::registerGenericAclSm();
}

AclSwitch::MachineRegistration::~MachineRegistration() {
   Fennel::aclSmFactoryIs( {} );
}

AclSwitch::AclSwitch( const Sim::SwitchProfile& profile )
    : agent_( profile ),
      profile_( agent_.simSwitch().profile() ),
      machine_( Fennel::GenericAclSm::from( agent_.aclSmEntity()->aclSm() ) ) {}

AclSwitch::~AclSwitch() = default;

void AclSwitch::bringUp() {
   if ( !machine_->started() ) {
      agent_.hwInit();
      machine_->markStarted();
   }
}

U32 AclSwitch::apply( const AclSetup& setup, const std::function<void( U32 )>& beforePass ) {
   copyParams( *setup.paramConfig, *agent_.paramConfig() );
   copyLists( *setup.config, *agent_.config() );
   copyBindings( *setup.intfConfig, *agent_.intfConfig() );
   standing_ = setup;
   U32 passes = 0;
   do {
      if ( beforePass ) {
         beforePass( passes + 1 );
      }
      machine_->runPass();
      ++passes;
   } while ( passes < kMaxPasses && expansionWaiting( *machine_ ) );
   return passes;
}

Fennel::Topology AclSwitch::topology() const {
   Fennel::Topology topology;
   for ( const auto& [number, members] : profile_.portChannels() ) {
      for ( Pylon::IntfId member : members ) {
         topology.portChannel[member] = Pylon::IntfId::portChannel( number );
      }
   }
   for ( const auto& [intf, vlan] : profile_.subIntfs() ) {
      topology.subIntf[{ intf.parent(), vlan }] = intf;
   }
   return topology;
}

Fennel::Evaluator AclSwitch::evaluator() const {
   return Fennel::Evaluator( standing_->config, standing_->intfConfig, standing_->paramConfig,
                             topology() );
}

bool expansionWaiting( const Fennel::GenericAclSm& machine ) {
   return std::ranges::any_of( machine.acls(), []( const auto& member ) {
      return member.second.pending == Fennel::PendingReason::expand;
   } );
}

}  // namespace HalyardCli
