// Real rule sets (ClassBench acl1, fw1, ipc1) as IPv4 lists bound in on both units of the
// default switch, applied by the generic machine: every header of their traces gets the
// hardware verdict and hit rule that the reference evaluator gives. Ranges that find no checker
// go in as blocks, and the list still goes in whole.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fennel/HalyardView.h"
#include "platform/vesper/ActivityLock.h"
#include "sim/chip/ClassBench.h"
#include "tests/fennel/common/Rules.h"
#include "tests/fennel/switch/GenericSwitch.h"

namespace {

using Acl::AclDirection;
using Acl::AclType;
using Pylon::IntfId;
using namespace FennelTest;

const std::string kDataDir = HALYARD_SOURCE_DIR "/../shared/data/classbench/";

Acl::FieldTerm portTerm( U16 lo, U16 hi ) {
   if ( lo == 0 && hi == 0xFFFF ) {
      return Acl::FieldTerm();
   }
   return lo == hi ? eq( { lo } ) : range( lo, hi );
}

// Rule i has sequence number 10 (i + 1); every third denies, the others permit.
void classBenchListIs( const Acl::Config::Ptr& config,
                       const std::vector<Sim::ClassBench::Rule>& rules ) {
   auto acl = config->aclConfigIs( AclType::ip, Vesper::Name( "cb" ) );
   for ( std::size_t i = 0; i < rules.size(); ++i ) {
      const Sim::ClassBench::Rule& r = rules[i];
      Acl::IpFilter f;
      f.sourceIs( Pylon::IpAddrWithFullMask( Pylon::IpAddr( r.src ), r.srcMask ) );
      f.destinationIs( Pylon::IpAddrWithFullMask( Pylon::IpAddr( r.dst ), r.dstMask ) );
      f.protoIs( r.protoMask == 0xFF ? r.proto : 0 );
      f.srcPortIs( portTerm( r.srcPortLo, r.srcPortHi ) );
      f.dstPortIs( portTerm( r.dstPortLo, r.dstPortHi ) );
      Acl::IpRuleConfig rule( f );
      rule.actionIs( i % 3 == 0 ? Acl::Action::deny : Acl::Action::permit );
      const U32 seq = static_cast<U32>( 10 * ( i + 1 ) );
      acl->ruleIs( seq, Acl::RuleConfig( rule ) );
   }
}

Fennel::Packet packetOf( const Sim::ClassBench::Header& h, IntfId in ) {
   Fennel::Packet p = ipv4Packet( "0.0.0.0", "0.0.0.0", h.proto );
   p.in = in;
   p.ipv4->src = Pylon::IpAddr( h.src );
   p.ipv4->dst = Pylon::IpAddr( h.dst );
   const Fennel::PacketL4Ports ports{ h.srcPort, h.dstPort, 0 };
   if ( h.proto == tcp ) {
      p.tcp = ports;
   } else if ( h.proto == udp ) {
      p.udp = ports;
   } else if ( h.proto == icmp ) {
      p.icmp = Fennel::PacketIcmp{ static_cast<U8>( h.srcPort >> 8 ),
                                   static_cast<U8>( h.srcPort & 0xFF ) };
   }
   return p;
}

struct SetCase {
   const char* rules;
   const char* trace;
   U32 rangeCheckers;  // per unit; 0: the chip's own
};

class ClassBenchThroughTheGenericLayer : public ::testing::TestWithParam<SetCase> {};

TEST_P( ClassBenchThroughTheGenericLayer, EveryTraceHeaderAgrees ) {
   const SetCase& c = GetParam();
   const auto rules = Sim::ClassBench::readRules( kDataDir + c.rules );
   const auto trace = Sim::ClassBench::readTrace( kDataDir + c.trace );
   ASSERT_GT( rules.size(), 500u );
   ASSERT_GT( trace.size(), 5000u );

   Vesper::ActivityLockGuard activity;
   Sim::SwitchOptions options;
   if ( c.rangeCheckers != 0 ) {
      Sim::UnitLimits limits;
      limits.rangeCheckers = c.rangeCheckers;
      limits.udfChunks = 64;
      options.unitLimits = limits;
   }
   GenericSwitch sw( Sim::defaultProfile(), options );
   classBenchListIs( sw.config(), rules );
   const IntfId ports[] = { IntfId::ethernet( 1 ), IntfId::ethernet( 25 ) };
   for ( IntfId port : ports ) {
      sw.bind( AclType::ip, "cb", port, AclDirection::in );
   }
   sw.settle();
   const Fennel::AclKey key( "cb", AclType::ip, AclDirection::in );
   const Fennel::AclState* acl = sw.machine().acl( key );
   ASSERT_NE( nullptr, acl );
   ASSERT_TRUE( acl->committed ) << acl->errorText;
   EXPECT_EQ( Fennel::PendingReason::none, acl->pending ) << acl->errorText;
   EXPECT_EQ( rules.size() + 1, acl->rules.size() );
   for ( const Fennel::AclUnitView& unit : Fennel::aclUnits( *sw.agent().helper(), key ) ) {
      EXPECT_TRUE( unit.installed ) << "unit " << unit.unit;
   }
   if ( c.rangeCheckers != 0 ) {
      // Too few checkers: some rules went in as blocks, and cost more than one subrule.
      ASSERT_FALSE( acl->expanded.empty() );
      for ( const auto& [seq, expanded] : acl->expanded ) {
         EXPECT_GT( expanded.subrules, expanded.rangeSubrules ) << "sequence " << seq;
      }
   }

   U32 disagreements = 0;
   for ( std::size_t i = 0; i < trace.size(); ++i ) {
      const Fennel::Packet p = packetOf( trace[i], ports[i % 2] );
      const std::string why = sw.disagreement( p );
      if ( !why.empty() && ++disagreements <= 5 ) {
         ADD_FAILURE() << "header " << i << ": " << why;
      }
   }
   EXPECT_EQ( 0u, disagreements ) << "of " << trace.size() << " headers";
}

INSTANTIATE_TEST_SUITE_P( Sets, ClassBenchThroughTheGenericLayer,
                          ::testing::Values( SetCase{ "acl1_1k", "acl1_1k_trace", 0 },
                                             SetCase{ "fw1_1k", "fw1_1k_trace", 0 },
                                             SetCase{ "ipc1_1k", "ipc1_1k_trace", 0 },
                                             SetCase{ "acl1_1k", "acl1_1k_trace", 8 } ),
                          []( const auto& info ) {
                             return std::string( info.param.rules ) +
                                    ( info.param.rangeCheckers ? "_fewCheckers" : "" );
                          } );

}  // namespace
