#include "tests/fennel/switch/GenericSwitch.h"

#include <gtest/gtest.h>

#include <sstream>

#include "cli/packets/SimPacket.h"
#include "fennel/HalyardView.h"
#include "platform/pylon/ValueText.h"

namespace FennelTest {

namespace {

using Fennel::RuleOrigin;

HalyardTest::AgentOptions agentOptions( const Sim::SwitchOptions& sim ) {
   HalyardTest::AgentOptions options;
   options.sim = sim;
   options.hwInit = false;  // the machine's first pass brings the back-end up
   return options;
}

std::string originText( const RuleOrigin& o ) {
   switch ( o.kind ) {
      case RuleOrigin::Kind::configured:
         return "seq " + std::to_string( o.seq );
      case RuleOrigin::Kind::neighborDiscovery:
         return "neighbour discovery permit";
      case RuleOrigin::Kind::closing:
         return "closing rule";
   }
   return "?";
}

// The origin the hardware must have hit for the evaluator's verdict of one ACL.
RuleOrigin expectedOrigin( const Fennel::AclVerdict& v ) {
   switch ( v.decider ) {
      case Fennel::AclDecider::rule:
         return RuleOrigin{ RuleOrigin::Kind::configured, *v.seq };
      case Fennel::AclDecider::neighborDiscovery:
         return RuleOrigin{ RuleOrigin::Kind::neighborDiscovery, 0 };
      case Fennel::AclDecider::icmp6Permit:  // the permit stands in the closing rule's number
      case Fennel::AclDecider::implicitDeny:
         return RuleOrigin{ RuleOrigin::Kind::closing, 0 };
   }
   return {};
}

void addHits( const Fennel::GenericAclSm& machine, const Fennel::EntryOwners& owners, U32 unit,
              const Sim::Verdict& verdict, std::vector<HardwareHit>& out ) {
   for ( const Sim::StageHit& hit : verdict.hits ) {
      const Fennel::EntryOwner* owner = owners.owner( unit, hit.entry );
      if ( !owner ) {
         continue;  // a hidden entry of the back-end's own
      }
      const Fennel::AclState* acl = machine.acl( owner->key );
      RuleOrigin origin{ RuleOrigin::Kind::closing, 0 };
      if ( acl && owner->ruleNum < acl->rules.size() ) {
         origin = acl->rules[owner->ruleNum];
      }
      out.push_back( HardwareHit{ owner->key, unit, origin } );
   }
}

}  // namespace

GenericMachineRegistration::GenericMachineRegistration() {
   Fennel::registerGenericAclSm();
}

GenericMachineRegistration::~GenericMachineRegistration() {
   Fennel::aclSmFactoryIs( {} );
}

GenericSwitch::GenericSwitch( const Sim::SwitchProfile& profile, const Sim::SwitchOptions& options )
    : agent_( profile, agentOptions( options ) ),
      machine_( Fennel::GenericAclSm::from( agent_.aclSmEntity()->aclSm() ) ) {}

void GenericSwitch::bind( Acl::AclType type, const std::string& name, Pylon::IntfId intf,
                          Acl::AclDirection direction ) {
   intfConfig()->intfAclIs( type, direction, intf, Vesper::Name( name ) );
}

Fennel::PassSummary GenericSwitch::runPass() {
   owners_.reset();
   return machine_->runPass();
}

U32 GenericSwitch::settle() {
   owners_.reset();
   return machine_->settle();
}

HardwareOutcome GenericSwitch::inject( const Fennel::Packet& packet ) {
   const std::string out = packet.out ? Pylon::valueToStrep( *packet.out ) : std::string();
   const Sim::SwitchVerdict v =
       agent_.sim().inject( Pylon::valueToStrep( packet.in ), simPacket( packet ), out );
   HardwareOutcome outcome;
   outcome.permit = !v.dropped();
   outcome.ingressPermit = !v.ingress.dropped;
   outcome.text = v.text();
   if ( !owners_ ) {
      owners_ = std::make_unique<Fennel::EntryOwners>( *agent_.helper() );
   }
   addHits( *machine_, *owners_, v.ingressUnit, v.ingress, outcome.hits );
   if ( v.egress ) {
      addHits( *machine_, *owners_, *v.egressUnit, *v.egress, outcome.hits );
   }
   return outcome;
}

Fennel::Evaluation GenericSwitch::reference( const Fennel::Packet& packet ) const {
   Fennel::Topology topology;
   for ( const auto& [portChannel, members] : agent_.sim().lagInputConfig()->members() ) {
      for ( Pylon::IntfId member : members ) {
         topology.portChannel[member] = portChannel;
      }
   }
   return Fennel::Evaluator( config(), intfConfig(), paramConfig(), topology ).evaluate( packet );
}

std::string GenericSwitch::disagreement( const Fennel::Packet& packet ) {
   const Fennel::Evaluation ref = reference( packet );
   const HardwareOutcome hw = inject( packet );
   std::ostringstream why;
   if ( ref.permit != hw.permit ) {
      why << "verdict: hardware " << ( hw.permit ? "permit" : "deny" ) << ", reference "
          << ( ref.permit ? "permit" : "deny" ) << "; ";
   }
   std::vector<bool> explained( hw.hits.size(), false );
   for ( const Fennel::AclVerdict& v : ref.acls ) {
      if ( v.direction == Acl::AclDirection::out && !hw.ingressPermit ) {
         continue;  // dropped before the egress lookup
      }
      const RuleOrigin want = expectedOrigin( v );
      std::vector<std::size_t> found;
      for ( std::size_t i = 0; i < hw.hits.size(); ++i ) {
         const Fennel::AclKey& k = hw.hits[i].key;
         if ( k.aclName() == v.aclName.str() && k.aclType() == v.type &&
              k.direction() == v.direction ) {
            found.push_back( i );
            explained[i] = true;
         }
      }
      if ( found.size() != 1 || !( hw.hits[found[0]].origin == want ) ) {
         why << v.aclName.str() << " " << v.direction << ": reference " << originText( want )
             << ", hardware";
         for ( std::size_t i : found ) {
            why << " " << originText( hw.hits[i].origin ) << " (unit " << hw.hits[i].unit << ")";
         }
         why << ( found.empty() ? " no hit" : "" ) << "; ";
      }
   }
   for ( std::size_t i = 0; i < hw.hits.size(); ++i ) {
      if ( !explained[i] ) {
         why << "hardware hit " << hw.hits[i].key.aclName() << " " << hw.hits[i].key.direction()
             << " " << originText( hw.hits[i].origin ) << ", which the reference does not apply; ";
      }
   }
   const std::string text = why.str();
   return text.empty() ? text : text + "[" + hw.text + "]";
}

Sim::Packet simPacket( const Fennel::Packet& p ) {
   return HalyardCli::toSimPacket( p );
}

}  // namespace FennelTest
