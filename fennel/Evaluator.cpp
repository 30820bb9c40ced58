#include "fennel/Evaluator.h"

#include <utility>

#include "fennel/EvaluatorRules.h"

namespace Fennel {

namespace {

using Acl::AclDirection;
using Acl::AclType;
using Pylon::IntfId;

constexpr U8 protoIcmp6 = 58;

constexpr AclType allTypes[] = { AclType::mac, AclType::ip, AclType::ipv6 };

bool appliesTo( AclType type, const Packet& p ) {
   switch ( type ) {
      case AclType::mac:
         return true;
      case AclType::ip:
         return p.ipv4.has_value();
      case AclType::ipv6:
         return p.ipv6.has_value();
   }
   return false;
}

bool ruleMatches( const Acl::RuleConfig& rule, const Packet& p ) {
   if ( rule.isRemark() ||
        ( rule.action() != Acl::Action::permit && rule.action() != Acl::Action::deny ) ) {
      return false;
   }
   switch ( rule.aclType() ) {
      case AclType::mac:
         return EvaluatorRules::macRuleMatches( rule.macFilter(), p );
      case AclType::ip:
         return EvaluatorRules::ipv4RuleMatches( rule.ipRuleConfig(), p );
      case AclType::ipv6:
         return EvaluatorRules::ipv6RuleMatches( rule.ip6RuleConfig(), p );
   }
   return false;
}

bool isNeighborDiscovery( const Packet& p ) {
   // Router solicitation and advertisement, neighbour solicitation and advertisement.
   return p.ipv6->next == protoIcmp6 && EvaluatorRules::hasLayer4Header( p ) && p.icmp &&
          p.icmp->type >= 133 && p.icmp->type <= 136;
}

// What decides a packet that no rule of an IPv6 ACL matched.
void ipv6End( Acl::PermitIcmp6TypesConfig setting, const Packet& p, AclVerdict& v ) {
   if ( setting == Acl::PermitIcmp6TypesConfig::defaultTypes && p.ipv6->next == protoIcmp6 ) {
      v.decider = AclDecider::icmp6Permit;
      v.permit = true;
   } else if ( setting == Acl::PermitIcmp6TypesConfig::neighborDiscovery &&
               isNeighborDiscovery( p ) ) {
      v.decider = AclDecider::neighborDiscovery;
      v.permit = true;
   }
}

}  // namespace

const AclVerdict* Evaluation::acl( const Vesper::Name& name, AclType type,
                                   AclDirection direction ) const {
   for ( const AclVerdict& v : acls ) {
      if ( v.aclName == name && v.type == type && v.direction == direction ) {
         return &v;
      }
   }
   return nullptr;
}

Evaluator::Evaluator( Acl::Config::PtrConst config, Acl::IntfConfig::PtrConst intfConfig,
                      Acl::ParamConfig::PtrConst paramConfig, Topology topology )
    : config_( std::move( config ) ),
      intfConfig_( std::move( intfConfig ) ),
      paramConfig_( std::move( paramConfig ) ),
      topology_( std::move( topology ) ) {}

AclVerdict Evaluator::evaluateAcl( const Acl::AclConfig& acl, AclDirection direction,
                                   const Packet& p ) const {
   AclVerdict v;
   v.aclName = acl.name();
   v.type = acl.type();
   v.direction = direction;
   for ( const auto& [seq, rule] : acl.rule() ) {
      if ( ruleMatches( rule, p ) ) {
         v.decider = AclDecider::rule;
         v.seq = seq;
         v.permit = rule.action() == Acl::Action::permit;
         v.log = rule.log();
         return v;
      }
   }
   if ( acl.type() == AclType::ipv6 ) {
      ipv6End( paramConfig_->permitIcmp6TypesConfig(), p, v );
   }
   return v;
}

void Evaluator::applyAt( IntfId intf, AclDirection direction, const Packet& p,
                         Evaluation& out ) const {
   for ( AclType type : allTypes ) {
      if ( !appliesTo( type, p ) ) {
         continue;
      }
      const Vesper::Name name = intfConfig_->intfAcl( type, direction, intf );
      const Acl::AclConfig::Ptr acl = name.empty() ? nullptr : config_->aclConfig( type, name );
      if ( !acl ) {
         continue;
      }
      AclVerdict v = evaluateAcl( *acl, direction, p );
      v.intf = intf;
      out.permit = out.permit && v.permit;
      out.acls.push_back( std::move( v ) );
   }
}

Evaluation Evaluator::evaluate( const Packet& p ) const {
   Evaluation out;
   auto portSide = [&]( IntfId port, AclDirection direction ) {
      applyAt( port, direction, p, out );
      IntfId parent = port;
      if ( auto pc = topology_.portChannel.find( port ); pc != topology_.portChannel.end() ) {
         parent = pc->second;
         applyAt( parent, direction, p, out );
      }
      if ( p.vlan ) {
         auto sub = topology_.subIntf.find( { parent, *p.vlan } );
         if ( sub != topology_.subIntf.end() ) {
            applyAt( sub->second, direction, p, out );
         }
      }
   };
   portSide( p.in, AclDirection::in );
   if ( p.routed && p.vlan && *p.vlan >= Pylon::VlanId::min && *p.vlan <= Pylon::VlanId::max ) {
      applyAt( IntfId::vlan( Pylon::VlanId( *p.vlan ) ), AclDirection::in, p, out );
   }
   if ( p.out ) {
      if ( p.out->isVlan() ) {
         if ( p.routed ) {
            applyAt( *p.out, AclDirection::out, p, out );
         }
      } else {
         portSide( *p.out, AclDirection::out );
      }
   }
   return out;
}

}  // namespace Fennel
