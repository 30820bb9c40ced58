#include "tests/acl/lifecycle/LifecycleBench.h"

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

namespace AclLifecycleTest {

Terms dstPortEq( U16 port ) {
   return Terms{ port, 0xFFFF, 0, 0, true };
}

Terms dstPortRange( U16 low, U16 high ) {
   return Terms{ 0, 0, low, high, true };
}

namespace {

Pylon::EthAddr hostMac( U8 host ) {
   return Pylon::EthAddr( 0, 0, 0, 0, 0, host );
}

Acl::RuleConfig withId( Acl::RuleConfig rule ) {
   rule.uniqueIdIs( Acl::UniqueId::next() );
   return rule;
}

}  // namespace

Rule macFromHost( Acl::Action action, U8 host ) {
   HalyardTest::MacRuleSpec spec;
   spec.action = action;
   spec.source = HalyardTest::macHost( hostMac( host ) );
   return Rule{ HalyardTest::macRule( spec ) };
}

Rule macAny( Acl::Action action ) {
   HalyardTest::MacRuleSpec spec;
   spec.action = action;
   return Rule{ HalyardTest::macRule( spec ) };
}

Acl::IpFilter ip4Filter( U8 proto, const std::string& src ) {
   Acl::IpFilter filter;
   filter.protoIs( proto );
   filter.sourceIs( Pylon::strepToValue<Pylon::IpAddrWithFullMask>( src ) );
   filter.destinationIs( Pylon::strepToValue<Pylon::IpAddrWithFullMask>( "0.0.0.0/0" ) );
   return filter;
}

Acl::Ip6Filter ip6Filter( U8 proto, const std::string& src ) {
   Acl::Ip6Filter filter;
   filter.protoIs( proto );
   filter.sourceIs( Pylon::strepToValue<Pylon::Ip6AddrWithFullMask>( src ) );
   filter.destinationIs( Pylon::strepToValue<Pylon::Ip6AddrWithFullMask>( "::/0" ) );
   return filter;
}

Rule ipRule( Acl::Action action, const Acl::IpFilter& filter, const std::vector<Terms>& subrules ) {
   Acl::IpRuleConfig rule( filter );
   rule.actionIs( action );
   return Rule{ withId( Acl::RuleConfig( rule ) ), subrules };
}

Rule ipRule( Acl::Action action, const Acl::Ip6Filter& filter,
             const std::vector<Terms>& subrules ) {
   Acl::Ip6RuleConfig rule( filter );
   rule.actionIs( action );
   return Rule{ withId( Acl::RuleConfig( rule ) ), subrules };
}

Rule ip4( Acl::Action action, U8 proto, const std::string& src,
          const std::vector<Terms>& subrules ) {
   return ipRule( action, ip4Filter( proto, src ), subrules );
}

Sim::Packet macPacket( U8 host ) {
   Sim::Packet p = Sim::Packet::ethernet( 0x0800 );
   p.srcMacIs( HalyardTest::simMac( hostMac( host ) ) );
   return p;
}

Sim::Packet tcpPacket( const std::string& src, U16 dstPort ) {
   return Sim::Packet::tcp4( Sim::ip4( src ), Sim::ip4( "192.168.0.1" ), 1024, dstPort );
}

Sim::Packet udpPacket( const std::string& src, U16 dstPort ) {
   return Sim::Packet::udp4( Sim::ip4( src ), Sim::ip4( "192.168.0.1" ), 1024, dstPort );
}

std::string intfName( U32 unit, U32 port ) {
   return Pylon::valueToStrep( HalyardTest::intfOf( unit, port ) );
}

TestAcl::TestAcl( HalyardTest::AgentSwitch& sw, std::string name, Acl::AclType type,
                  Acl::AclDirection direction )
    : sw_( sw ), data_( HalyardTest::aclDataOf( std::move( name ), type, direction ) ) {}

Halyard::HalyardAclData::Ptr TestAcl::records() const {
   return sw_.helper()->halyardAclData( data_->key() );
}

Halyard::AclUnitData::Ptr TestAcl::unitData( U32 unit ) const {
   const Halyard::HalyardAclData::Ptr saclData = records();
   return saclData ? saclData->unitData( unit ) : nullptr;
}

Halyard::AclCommonUnitData::Ptr TestAcl::common( U32 unit ) const {
   const Halyard::AclUnitData::Ptr record = unitData( unit );
   return record ? record->common() : nullptr;
}

bool TestAcl::bound( Pylon::IntfId intf ) {
   sw_.intfConfig()->intfAclIs( data_->aclType(), data_->direction(), intf,
                                Vesper::Name( data_->aclName() ) );
   data_->activeIntfIs( intf, true );
   return sw_.helper()->addIntfToAcl( Fennel::IntfPairKey( intf, Pylon::IntfId() ), data_,
                                      nullptr );
}

bool TestAcl::unbound( Pylon::IntfId intf, bool belongsToAnother ) {
   sw_.intfConfig()->intfAclDel( data_->aclType(), data_->direction(), intf );
   data_->activeIntfDel( intf );
   return sw_.helper()->removeIntfFromAcl( Fennel::IntfPairKey( intf, Pylon::IntfId() ), data_,
                                           belongsToAnother );
}

Fennel::AclCreateError TestAcl::applied( const std::vector<Rule>& rules, bool active ) {
   rules_ = rules;
   Halyard::AclHelper& helper = *sw_.helper();
   if ( version_ != 0 ) {
      helper.destroyAcl( data_ );
      data_->installedIs( false );
   }
   data_->aclVersionIs( ++version_ );
   EXPECT_EQ( Fennel::aclCreateSuccess, helper.precreateAcl( data_, nullptr ) );
   Fennel::AclCreateError result = Fennel::aclCreateSuccess;
   auto noted = [&result]( Fennel::AclCreateError rc ) {
      if ( rc != Fennel::aclCreateSuccess ) {
         result = rc;
      }
   };
   U32 ruleNum = 0;
   for ( const Rule& rule : rules ) {
      const Acl::UniqueId id = rule.config.uniqueId();
      if ( data_->aclType() == Acl::mac_ ) {
         noted( helper.createMacAclRule( rule.config, id, data_, ruleNum ) );
      } else {
         for ( U32 sub = 0; sub < rule.subrules.size(); ++sub ) {
            const Terms& t = rule.subrules[sub];
            noted( helper.createIpAclSubrule( data_->aclType(), rule.config, id, data_, ruleNum,
                                              sub, 0, 0, t.dstPort, t.dstPortMask, 0, 0, t.dstLow,
                                              t.dstHigh, 0, 0, 0, 0, 0, t.l4, 0, 0 ) );
         }
         if ( rule.fragmentRule ) {
            noted( helper.createIpFragRule( data_, rule.config, id, ruleNum,
                                            static_cast<U32>( rule.subrules.size() ) ) );
         }
      }
      ++ruleNum;
   }
   noted( helper.createFinalAclRule( data_->aclType(), data_, ruleNum ) );
   helper.prepareToCommit();
   helper.commitAcl( data_ );
   bool installed = true;
   for ( const auto& member : records()->unitData() ) {
      installed = installed && member.value()->common()->installed();
   }
   data_->installedIs( installed );
   helper.updateAclPorts( data_, active );
   return result;
}

void TestAcl::removed() {
   sw_.helper()->destroyAcl( data_ );
   sw_.helper()->cleanupAcl( data_ );
   data_->installedIs( false );
}

std::vector<U32> TestAcl::ruleEntries( U32 unit, U32 ruleNum ) const {
   std::vector<U32> entries;
   const Halyard::AclCommonUnitData::Ptr rules = common( unit );
   const Halyard::AclRuleData::Ptr rule = rules ? rules->aclRule( ruleNum ) : nullptr;
   if ( rule ) {
      for ( const auto& list : rule->entryList() ) {
         for ( const auto& member : list.entry() ) {
            entries.push_back( member.key() );
         }
      }
   }
   return entries;
}

std::optional<U32> TestAcl::ruleOfEntry( U32 unit, U32 entry ) const {
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

std::optional<U32> TestAcl::ruleHit( const Sim::SwitchVerdict& verdict ) const {
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

std::string poolsText( const HalyardTest::AgentSwitch& sw, bool slices ) {
   std::ostringstream out;
   const Halyard::AclHelper& helper = *sw.helper();
   for ( const U32 unit : sw.units() ) {
      out << "unit " << unit << "\n";
      const Sim::UnitUsage usage = sw.sim().tcamUsage( unit );
      for ( const Sim::GroupUsage& g : usage.groups ) {
         out << " " << Vesper::stringValue( g.assignment ) << " used " << g.used;
         if ( slices ) {
            out << " slices " << g.slices;
         }
         out << "\n";
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
      const Sim::ChipModel& chip = sw.chip( unit );
      for ( U32 port = 0; port < chip.config().portCount; ++port ) {
         const U32 in = HalyardTest::ingressClass( chip, port );
         const U32 egress = HalyardTest::egressClass( chip, port );
         if ( in || egress ) {
            out << " port " << port << " classes " << in << " " << egress << "\n";
         }
      }
   }
   return out.str();
}

std::vector<U8> ingressClassesTaken( const HalyardTest::AgentSwitch& sw, U32 unit ) {
   std::vector<U8> taken;
   const Halyard::HalyardIntfClassData::Ptr pool = sw.helper()->halyardIntfClassData( unit );
   while ( const U8 c = pool->freeAclIntfClassPop() ) {
      taken.push_back( c );
   }
   return taken;
}

void ingressClassesGiven( const HalyardTest::AgentSwitch& sw, U32 unit,
                          const std::vector<U8>& classes ) {
   const Halyard::HalyardIntfClassData::Ptr pool = sw.helper()->halyardIntfClassData( unit );
   for ( auto it = classes.rbegin(); it != classes.rend(); ++it ) {
      pool->freeAclIntfClassPush( *it );
   }
}

}  // namespace AclLifecycleTest
