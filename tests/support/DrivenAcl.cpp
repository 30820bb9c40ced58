#include "tests/support/DrivenAcl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <utility>

#include "platform/pylon/Ip6Addr.h"
#include "platform/pylon/IpAddr.h"
#include "platform/pylon/ValueText.h"
#include "platform/vesper/Enum.h"
#include "tests/support/AclRecords.h"
#include "tests/support/ChipReadback.h"
#include "tests/support/SwitchLayout.h"

namespace HalyardTest {

Terms dstPortEq( U16 port ) {
   Terms t;
   t.dstPort = port;
   t.dstPortMask = 0xFFFF;
   t.l4 = true;
   return t;
}

Terms dstPortRange( U16 low, U16 high ) {
   Terms t;
   t.dstLow = low;
   t.dstHigh = high;
   t.l4 = true;
   return t;
}

Terms srcPortRange( U16 low, U16 high ) {
   Terms t;
   t.srcLow = low;
   t.srcHigh = high;
   t.l4 = true;
   return t;
}

Terms ipLengthEq( U16 length ) {
   Terms t;
   t.ipLen = length;
   t.ipLenMask = 0xFFFF;
   t.ipLenLow = length;
   t.ipLenHigh = length;
   return t;
}

Pylon::IpAddrWithFullMask v4( std::string_view text ) {
   return Pylon::strepToValue<Pylon::IpAddrWithFullMask>( text );
}

Pylon::Ip6AddrWithFullMask v6( std::string_view text ) {
   return Pylon::strepToValue<Pylon::Ip6AddrWithFullMask>( text );
}

Acl::IpFilter ip4Filter( U8 proto, std::string_view src, std::string_view dst ) {
   Acl::IpFilter filter;
   filter.protoIs( proto );
   filter.sourceIs( v4( src ) );
   filter.destinationIs( v4( dst ) );
   return filter;
}

Acl::Ip6Filter ip6Filter( U8 proto, std::string_view src, std::string_view dst ) {
   Acl::Ip6Filter filter;
   filter.protoIs( proto );
   filter.sourceIs( v6( src ) );
   filter.destinationIs( v6( dst ) );
   return filter;
}

namespace {

template <class Config, class Filter>
Acl::RuleConfig ruleOf( Acl::Action action, const Filter& filter, bool log ) {
   Config rule( filter );
   rule.actionIs( action );
   rule.logIs( log );
   // Configured rules have ids of their own, with the top bit clear.
   static U64 nextId = 1;
   rule.uniqueIdIs( Acl::UniqueId( nextId++ ) );
   return Acl::RuleConfig( rule );
}

Pylon::EthAddr hostMac( U8 host ) {
   return Pylon::EthAddr( 0, 0, 0, 0, 0, host );
}

}  // namespace

Acl::RuleConfig ip4Rule( Acl::Action action, const Acl::IpFilter& filter, bool log ) {
   return ruleOf<Acl::IpRuleConfig>( action, filter, log );
}

Acl::RuleConfig ip6Rule( Acl::Action action, const Acl::Ip6Filter& filter, bool log ) {
   return ruleOf<Acl::Ip6RuleConfig>( action, filter, log );
}

Rule ipRule( Acl::Action action, const Acl::IpFilter& filter, const std::vector<Terms>& subrules ) {
   return Rule{ ip4Rule( action, filter ), subrules };
}

Rule ipRule( Acl::Action action, const Acl::Ip6Filter& filter,
             const std::vector<Terms>& subrules ) {
   return Rule{ ip6Rule( action, filter ), subrules };
}

Rule ip4( Acl::Action action, U8 proto, std::string_view src, const std::vector<Terms>& subrules ) {
   return ipRule( action, ip4Filter( proto, src ), subrules );
}

Rule macFromHost( Acl::Action action, U8 host ) {
   MacRuleSpec spec;
   spec.action = action;
   spec.source = macHost( hostMac( host ) );
   return Rule{ macRule( spec ) };
}

Rule macAny( Acl::Action action ) {
   MacRuleSpec spec;
   spec.action = action;
   return Rule{ macRule( spec ) };
}

Sim::Packet macPacket( U8 host ) {
   Sim::Packet p = Sim::Packet::ethernet( 0x0800 );
   p.srcMacIs( simMac( hostMac( host ) ) );
   return p;
}

Sim::Packet macPacket( const Pylon::EthAddr& src, const Pylon::EthAddr& dst, U16 etherType ) {
   Sim::Packet p = Sim::Packet::ethernet( etherType );
   p.srcMacIs( simMac( src ) ).dstMacIs( simMac( dst ) );
   return p;
}

Sim::Packet tcpPacket( const std::string& src, U16 dstPort ) {
   return Sim::Packet::tcp4( Sim::ip4( src ), Sim::ip4( "192.168.0.1" ), 1024, dstPort );
}

Sim::Packet udpPacket( const std::string& src, U16 dstPort ) {
   return Sim::Packet::udp4( Sim::ip4( src ), Sim::ip4( "192.168.0.1" ), 1024, dstPort );
}

std::string intfName( U32 unit, U32 port ) {
   return Pylon::valueToStrep( intfOf( unit, port ) );
}

DrivenAcl::DrivenAcl( AgentSwitch& sw, std::string name, Acl::AclType type,
                      Acl::AclDirection direction, bool standard )
    : sw_( &sw ), data_( aclDataOf( std::move( name ), type, direction, 0, standard ) ) {}

DrivenAcl::DrivenAcl( AgentSwitch& sw, std::string name, Acl::AclType type,
                      Acl::AclDirection direction, const std::vector<Pylon::IntfId>& ports,
                      bool standard )
    : DrivenAcl( sw, std::move( name ), type, direction, standard ) {
   portsBound( ports );
   EXPECT_EQ( Fennel::aclCreateSuccess, precreated() );
}

Halyard::HalyardAclData::Ptr DrivenAcl::records() const {
   return sw_->helper()->halyardAclData( data_->key() );
}

Halyard::AclUnitData::Ptr DrivenAcl::unitData( U32 unit ) const {
   const Halyard::HalyardAclData::Ptr saclData = records();
   return saclData ? saclData->unitData( unit ) : nullptr;
}

Halyard::AclCommonUnitData::Ptr DrivenAcl::common( U32 unit ) const {
   const Halyard::AclUnitData::Ptr record = unitData( unit );
   return record ? record->common() : nullptr;
}

void DrivenAcl::portsBound( const std::vector<Pylon::IntfId>& ports ) {
   for ( const Pylon::IntfId intf : ports ) {
      bindPort( sw_->helper(), data_, intf );
   }
}

bool DrivenAcl::bound( Pylon::IntfId intf ) {
   sw_->intfConfig()->intfAclIs( data_->aclType(), data_->direction(), intf,
                                 Vesper::Name( data_->aclName() ) );
   data_->activeIntfIs( intf, true );
   return sw_->helper()->addIntfToAcl( Fennel::IntfPairKey( intf, Pylon::IntfId() ), data_,
                                       nullptr );
}

bool DrivenAcl::unbound( Pylon::IntfId intf, bool belongsToAnother ) {
   sw_->intfConfig()->intfAclDel( data_->aclType(), data_->direction(), intf );
   data_->activeIntfDel( intf );
   return sw_->helper()->removeIntfFromAcl( Fennel::IntfPairKey( intf, Pylon::IntfId() ), data_,
                                            belongsToAnother );
}

Fennel::AclCreateError DrivenAcl::precreated() {
   nextRuleNum_ = 0;
   return sw_->helper()->precreateAcl( data_, nullptr );
}

Fennel::AclCreateError DrivenAcl::ruleIs( const Acl::RuleConfig& rule,
                                          const std::vector<Terms>& subrules ) {
   const U32 ruleNum = nextRuleNum_++;
   Halyard::AclHelper& helper = *sw_->helper();
   lastRule_ = rule;
   lastSubrules_ = static_cast<U32>( subrules.size() );
   if ( data_->aclType() == Acl::mac_ ) {
      return helper.createMacAclRule( rule, rule.uniqueId(), data_, ruleNum );
   }
   Fennel::AclCreateError result = Fennel::aclCreateSuccess;
   for ( U32 sub = 0; sub < subrules.size(); ++sub ) {
      const Terms& t = subrules[sub];
      const Fennel::AclCreateError rc = helper.createIpAclSubrule(
          data_->aclType(), rule, rule.uniqueId(), data_, ruleNum, sub, t.srcPort, t.srcPortMask,
          t.dstPort, t.dstPortMask, t.srcLow, t.srcHigh, t.dstLow, t.dstHigh, t.ipLen, t.ipLenMask,
          t.ipLenLow, t.ipLenHigh, t.tcpFlags, t.l4, t.ecn, t.ecnMask );
      if ( rc != Fennel::aclCreateSuccess ) {
         result = rc;
      }
   }
   return result;
}

Fennel::AclCreateError DrivenAcl::fragRuleIs() {
   return sw_->helper()->createIpFragRule( data_, *lastRule_, lastRule_->uniqueId(),
                                           nextRuleNum_ - 1, lastSubrules_ );
}

Fennel::AclCreateError DrivenAcl::closed() {
   return sw_->helper()->createFinalAclRule( data_->aclType(), data_, nextRuleNum_ );
}

void DrivenAcl::committed() {
   sw_->helper()->prepareToCommit();
   sw_->helper()->commitAcl( data_ );
}

Fennel::AclCreateError DrivenAcl::rulesCreated( const std::vector<Acl::RuleConfig>& rules ) {
   Fennel::AclCreateError result = Fennel::aclCreateSuccess;
   for ( const Acl::RuleConfig& rule : rules ) {
      const Fennel::AclCreateError rc = ruleIs( rule );
      if ( rc != Fennel::aclCreateSuccess ) {
         result = rc;
      }
   }
   const Fennel::AclCreateError rc = closed();
   return rc != Fennel::aclCreateSuccess ? rc : result;
}

Fennel::AclCreateError DrivenAcl::firstPass( const std::vector<Acl::RuleConfig>& rules ) {
   precreated();
   const Fennel::AclCreateError rc = rulesCreated( rules );
   committed();
   return rc;
}

void DrivenAcl::rulesCommitted( const std::vector<Rule>& rules ) {
   for ( const Rule& rule : rules ) {
      ASSERT_EQ( Fennel::aclCreateSuccess, ruleIs( rule.config, rule.subrules ) )
          << nextRuleNum_ - 1;
      if ( rule.fragmentRule ) {
         ASSERT_EQ( Fennel::aclCreateSuccess, fragRuleIs() ) << nextRuleNum_ - 1;
      }
   }
   ASSERT_EQ( Fennel::aclCreateSuccess, closed() );
   committed();
}

Fennel::AclCreateError DrivenAcl::applied( const std::vector<Rule>& rules, bool active ) {
   rules_ = rules;
   Halyard::AclHelper& helper = *sw_->helper();
   if ( version_ != 0 ) {
      helper.destroyAcl( data_ );
      data_->installedIs( false );
   }
   data_->aclVersionIs( ++version_ );
   EXPECT_EQ( Fennel::aclCreateSuccess, precreated() );
   Fennel::AclCreateError result = Fennel::aclCreateSuccess;
   auto noted = [&result]( Fennel::AclCreateError rc ) {
      if ( rc != Fennel::aclCreateSuccess ) {
         result = rc;
      }
   };
   for ( const Rule& rule : rules ) {
      noted( ruleIs( rule.config, rule.subrules ) );
      if ( rule.fragmentRule && data_->aclType() != Acl::mac_ ) {
         noted( fragRuleIs() );
      }
   }
   noted( closed() );
   committed();
   bool installed = true;
   for ( const auto& member : records()->unitData() ) {
      installed = installed && member.value()->common()->installed();
   }
   data_->installedIs( installed );
   helper.updateAclPorts( data_, active );
   return result;
}

void DrivenAcl::removed() {
   sw_->helper()->destroyAcl( data_ );
   sw_->helper()->cleanupAcl( data_ );
   data_->installedIs( false );
}

std::vector<U32> DrivenAcl::entries( U32 unit, U32 ruleNum, U32 subRule ) const {
   std::vector<U32> out;
   const Halyard::AclCommonUnitData::Ptr rules = common( unit );
   const Halyard::AclRuleData::Ptr rule = rules ? rules->aclRule( ruleNum ) : nullptr;
   const Halyard::AclEntryList::Ptr list = rule ? rule->entryList( subRule ) : nullptr;
   if ( list ) {
      for ( const auto& member : list->entry() ) {
         out.push_back( member.key() );
      }
   }
   return out;
}

std::vector<U32> DrivenAcl::ruleEntries( U32 unit, U32 ruleNum ) const {
   std::vector<U32> out;
   const Halyard::AclCommonUnitData::Ptr rules = common( unit );
   const Halyard::AclRuleData::Ptr rule = rules ? rules->aclRule( ruleNum ) : nullptr;
   if ( rule ) {
      for ( const auto& list : rule->entryList() ) {
         for ( const auto& member : list.entry() ) {
            out.push_back( member.key() );
         }
      }
   }
   return out;
}

std::optional<U32> DrivenAcl::ruleOfEntry( U32 unit, U32 entry ) const {
   const Halyard::AclCommonUnitData::Ptr rules = common( unit );
   if ( !rules ) {
      return std::nullopt;
   }
   for ( const auto& rule : rules->aclRule() ) {
      for ( const auto& list : rule.entryList() ) {
         if ( list.entryHas( entry ) ) {
            return rule.ruleNum();
         }
      }
   }
   return std::nullopt;
}

std::optional<U32> DrivenAcl::ruleHit( const Sim::SwitchVerdict& verdict ) const {
   for ( const Sim::StageHit& hit : verdict.ingress.hits ) {
      if ( auto ruleNum = ruleOfEntry( verdict.ingressUnit, hit.entry ) ) {
         return ruleNum;
      }
   }
   if ( verdict.egress ) {
      for ( const Sim::StageHit& hit : verdict.egress->hits ) {
         if ( auto ruleNum = ruleOfEntry( *verdict.egressUnit, hit.entry ) ) {
            return ruleNum;
         }
      }
   }
   return std::nullopt;
}

std::optional<U32> DrivenAcl::ruleHitIn( U32 unit, const Sim::Verdict& verdict,
                                         std::optional<U32> egressPort ) const {
   const Halyard::AclCommonUnitData::Ptr rules = common( unit );
   if ( !rules ) {
      return std::nullopt;
   }
   for ( const auto& rule : rules->aclRule() ) {
      for ( const U32 entry : ruleEntries( unit, rule.ruleNum() ) ) {
         const Sim::GroupId group = sw_->chip( unit ).entryGroup( entry ).value_or( 0 );
         const auto hit = egressPort ? verdict.hitIn( group, *egressPort ) : verdict.hitIn( group );
         if ( hit == entry ) {
            return rule.ruleNum();
         }
      }
   }
   return std::nullopt;
}

namespace {

std::vector<U32> classesOf( const Halyard::IntfClassPool& pool ) {
   std::vector<U32> classes;
   for ( U32 i = 0; i < pool.size(); ++i ) {
      classes.push_back( pool.stack().at( i ) );
   }
   std::sort( classes.begin(), classes.end() );
   return classes;
}

// The classes as runs: " 1-255", " 2 4 6".
void classesWritten( std::ostream& out, const char* what, const Halyard::IntfClassPool& pool ) {
   out << " " << what << " " << pool.size() << ":";
   const std::vector<U32> classes = classesOf( pool );
   for ( size_t i = 0; i < classes.size(); ) {
      size_t j = i;
      while ( j + 1 < classes.size() && classes[j + 1] == classes[j] + 1 ) {
         ++j;
      }
      out << " " << classes[i];
      if ( j > i ) {
         out << "-" << classes[j];
      }
      i = j + 1;
   }
   out << "\n";
}

}  // namespace

std::string poolsText( const Sim::SimSwitch& sim, const Halyard::AclHelper& helper, bool slices ) {
   std::ostringstream out;
   for ( const U32 unit : sim.units() ) {
      out << "unit " << unit << "\n";
      const Sim::UnitUsage usage = sim.tcamUsage( unit );
      const Sim::ChipModel& chip = sim.chip( unit );
      for ( const Sim::GroupUsage& g : usage.groups ) {
         out << " " << Vesper::stringValue( g.assignment ) << " used " << g.used << " chip "
             << chip.entries( static_cast<Sim::GroupId>( g.assignment ) ).size();
         if ( slices ) {
            out << " capacity " << g.capacity << " slices " << g.slices;
         }
         out << "\n";
      }
      if ( slices ) {
         for ( std::size_t s = 0; s < usage.stages.size(); ++s ) {
            out << " stage " << s << " free slices " << usage.stages[s].freeSlices << "\n";
         }
      }
      out << " rangeCheckers " << usage.rangeCheckersUsed << " udfChunks " << usage.udfChunksUsed
          << "\n";
      classesWritten( out, "ingress classes",
                      helper.halyardIntfClassData( unit )->freeAclIntfClass() );
      for ( const Acl::AclType type : { Acl::ip_, Acl::ipv6_, Acl::mac_ } ) {
         const auto sm = helper.getHalyardAclTypeDirectionFeatureSm( type, Acl::out_,
                                                                     Halyard::aclFeatureSecurity );
         out << " " << type;
         classesWritten( out, "egress classes", sm->unitData( unit )->freeIntfClass() );
      }
      for ( const auto& claim : helper.vfpAclTypeForUnit( unit )->vfpAclTypeForPort() ) {
         out << " claim " << claim.key() << " " << claim.value() << "\n";
      }
      for ( U32 port = 0; port < chip.config().portCount; ++port ) {
         const U32 in = ingressClass( chip, port );
         const U32 egress = egressClass( chip, port );
         if ( in || egress ) {
            out << " port " << port << " classes " << in << " " << egress << "\n";
         }
      }
   }
   return out.str();
}

std::string poolsText( const AgentSwitch& sw, bool slices ) {
   return poolsText( sw.sim(), *sw.helper(), slices );
}

std::vector<U8> ingressClassesTaken( const AgentSwitch& sw, U32 unit ) {
   std::vector<U8> taken;
   const Halyard::HalyardIntfClassData::Ptr pool = sw.helper()->halyardIntfClassData( unit );
   while ( const U8 c = pool->freeAclIntfClassPop() ) {
      taken.push_back( c );
   }
   return taken;
}

void ingressClassesGiven( const AgentSwitch& sw, U32 unit, const std::vector<U8>& classes ) {
   const Halyard::HalyardIntfClassData::Ptr pool = sw.helper()->halyardIntfClassData( unit );
   for ( auto it = classes.rbegin(); it != classes.rend(); ++it ) {
      pool->freeAclIntfClassPush( *it );
   }
}

}  // namespace HalyardTest
