#include "cli/replay/Replayer.h"

#include <sstream>

#include "cli/packets/SimPacket.h"
#include "platform/pylon/ValueText.h"
#include "platform/vesper/Enum.h"

namespace HalyardCli {

namespace {

using Fennel::RuleOrigin;

// Packet numbers kept for the closing summary; the rest are counted only.
constexpr std::size_t kDifferingKept = 20;

std::string aclOf( const Fennel::AclKey& key ) {
   return key.aclName() + " " + Vesper::stringValue( key.direction() );
}

bool sameAcl( const Fennel::AclKey& key, const Fennel::AclVerdict& v ) {
   return key.aclName() == v.aclName.str() && key.aclType() == v.type &&
          key.direction() == v.direction;
}

const char* verdictText( bool permit ) {
   return permit ? "permit" : "deny";
}

}  // namespace

std::string originText( const RuleOrigin& origin ) {
   switch ( origin.kind ) {
      case RuleOrigin::Kind::configured:
         return "rule " + std::to_string( origin.seq );
      case RuleOrigin::Kind::neighborDiscovery:
         return "neighbour discovery permit";
      case RuleOrigin::Kind::closing:
         return "closing rule";
   }
   return "?";
}

RuleOrigin originOf( const Fennel::AclVerdict& v ) {
   switch ( v.decider ) {
      case Fennel::AclDecider::rule:
         return RuleOrigin{ RuleOrigin::Kind::configured, v.seq.value_or( 0 ) };
      case Fennel::AclDecider::neighborDiscovery:
         return RuleOrigin{ RuleOrigin::Kind::neighborDiscovery, 0 };
      case Fennel::AclDecider::icmp6Permit:
      case Fennel::AclDecider::implicitDeny:
         return RuleOrigin{ RuleOrigin::Kind::closing, 0 };
   }
   return {};
}

std::string difference( const HardwareAnswer& hw, const Fennel::Evaluation& ref ) {
   std::ostringstream acls;
   std::vector<bool> explained( hw.hits.size(), false );
   for ( const Fennel::AclVerdict& v : ref.acls ) {
      if ( v.direction == Acl::AclDirection::out && !hw.ingressPermit ) {
         continue;  // dropped before the egress lookup
      }
      const RuleOrigin want = originOf( v );
      std::vector<std::size_t> found;
      for ( std::size_t i = 0; i < hw.hits.size(); ++i ) {
         if ( sameAcl( hw.hits[i].key, v ) ) {
            found.push_back( i );
            explained[i] = true;
         }
      }
      if ( found.size() == 1 && hw.hits[found[0]].origin == want ) {
         continue;
      }
      acls << "; " << v.aclName.str() << " " << v.direction << ": hardware ";
      for ( std::size_t n = 0; n < found.size(); ++n ) {
         acls << ( n ? " and " : "" ) << originText( hw.hits[found[n]].origin ) << " on unit "
              << hw.hits[found[n]].unit;
      }
      acls << ( found.empty() ? "no hit" : "" ) << ", reference " << originText( want );
   }
   for ( std::size_t i = 0; i < hw.hits.size(); ++i ) {
      if ( !explained[i] ) {
         acls << "; " << aclOf( hw.hits[i].key ) << ": hardware " << originText( hw.hits[i].origin )
              << " on unit " << hw.hits[i].unit << ", which the reference does not apply";
      }
   }
   if ( hw.permit == ref.permit && acls.str().empty() ) {
      return {};
   }
   return std::string( "hardware " ) + verdictText( hw.permit ) + ", reference " +
          verdictText( ref.permit ) + acls.str();
}

Replayer::Replayer( AclSwitch& sw, bool check ) : sw_( sw ), owners_( sw.helper() ) {
   if ( check ) {
      evaluator_.emplace( sw.evaluator() );
   }
}

void Replayer::addHits( U32 unit, const Sim::Verdict& verdict, std::vector<AclHit>& out ) const {
   for ( const Sim::StageHit& hit : verdict.hits ) {
      const Fennel::EntryOwner* owner = owners_.owner( unit, hit.entry );
      if ( !owner ) {
         continue;  // a hidden entry of the back-end's own
      }
      RuleOrigin origin{ RuleOrigin::Kind::closing, 0 };
      const Fennel::AclState* acl = sw_.machine().acl( owner->key );
      if ( acl && owner->ruleNum < acl->rules.size() ) {
         origin = acl->rules[owner->ruleNum];
      }
      out.push_back( AclHit{ owner->key, unit, origin } );
   }
}

HardwareAnswer Replayer::inject( const Fennel::Packet& packet ) {
   Sim::SimSwitch& sim = sw_.simSwitch();
   const Sim::SwitchVerdict v = HalyardCli::inject( sim, packet );
   HardwareAnswer hw;
   hw.permit = !v.dropped();
   hw.ingressPermit = !v.ingress.dropped;
   hw.cpu = v.copyToCpu();
   if ( hw.permit ) {
      for ( const HalyardTypes::HalyardPort& port : v.delivered ) {
         hw.egress.push_back( Pylon::valueToStrep( sim.intfOf( port ) ) );
      }
   }
   addHits( v.ingressUnit, v.ingress, hw.hits );
   if ( v.egress ) {
      addHits( *v.egressUnit, *v.egress, hw.hits );
   }
   return hw;
}

PacketOutcome Replayer::replay( const Fennel::Packet& packet ) {
   PacketOutcome outcome;
   outcome.number = totals_.packets + 1;
   outcome.hardware = inject( packet );
   if ( evaluator_ ) {
      outcome.reference = evaluator_->evaluate( packet );
      outcome.difference = difference( outcome.hardware, *outcome.reference );
      outcome.agree = outcome.difference.empty();
   }
   count( outcome );
   return outcome;
}

void Replayer::count( const PacketOutcome& outcome ) {
   ++totals_.packets;
   ++( outcome.hardware.permit ? totals_.permit : totals_.deny );
   totals_.cpu += outcome.hardware.cpu ? 1 : 0;
   if ( !outcome.agree ) {
      ++totals_.disagree;
      if ( totals_.differing.size() < kDifferingKept ) {
         totals_.differing.push_back( outcome.number );
      }
   }
   for ( const AclHit& hit : outcome.hardware.hits ) {
      RuleHits& rules = totals_.hits[hit.key];
      switch ( hit.origin.kind ) {
         case RuleOrigin::Kind::configured:
            ++rules.bySeq[hit.origin.seq];
            break;
         case RuleOrigin::Kind::neighborDiscovery:
            ++rules.neighborDiscovery;
            break;
         case RuleOrigin::Kind::closing:
            ++rules.closing;
            break;
      }
   }
}

}  // namespace HalyardCli
