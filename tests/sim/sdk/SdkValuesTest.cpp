// The translations between this SDK build's numbers and the chip model's names: every model
// value has its own number, and comes back from it.
#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>
#include <set>

#include "sim/sdk/SdkValues.h"

namespace SimSdkTest {
namespace {

using namespace Sim;
using namespace Sim::SdkValues;

template <typename Model, typename Sdk>
void expectRoundTrips( std::initializer_list<Model> values, Sdk ( *toSdk )( Model ),
                       std::optional<Model> ( *toModel )( Sdk ) ) {
   std::set<int> numbers;
   for ( Model m : values ) {
      const Sdk s = toSdk( m );
      EXPECT_TRUE( numbers.insert( static_cast<int>( s ) ).second )
          << "number " << static_cast<int>( s ) << " used twice";
      EXPECT_EQ( m, toModel( s ) ) << static_cast<int>( s );
   }
   EXPECT_FALSE( toModel( Sdk{ 12345 } ).has_value() );
}

TEST( SdkValues, EveryEnumerationRoundTrips ) {
   expectRoundTrips( { ActionId::Drop, ActionId::CopyToCpu, ActionId::SwitchToCpuCancel,
                       ActionId::CosQCpuNew, ActionId::PrioIntNew, ActionId::EgressMask,
                       ActionId::MirrorIngressIndex, ActionId::ClassSourceSet,
                       ActionId::HgTrunkResolveCancel, ActionId::TrunkLoadBalanceCancel },
                     &sdkAction, &actionOf );
   expectRoundTrips(
       { IpFrag::Non, IpFrag::First, IpFrag::NonOrFirst, IpFrag::NotFirst, IpFrag::Any },
       &sdkIpFrag, &ipFragOf );
   expectRoundTrips( { IpType::Any, IpType::NonIp, IpType::Ip, IpType::Ipv4Any, IpType::Ipv6,
                       IpType::Ipv6NoExtHdr, IpType::Ipv6OneExtHdr, IpType::Arp },
                     &sdkIpType, &ipTypeOf );
   expectRoundTrips(
       { StpState::Disable, StpState::Block, StpState::Listen, StpState::Learn, StpState::Forward },
       &sdkStpState, &stpStateOf );
   expectRoundTrips( { RangeType::SrcPort, RangeType::DstPort, RangeType::IpLength }, &sdkRangeType,
                     &rangeTypeOf );
   expectRoundTrips( { PortClassKind::FieldIngress, PortClassKind::FieldEgress }, &sdkPortClass,
                     &portClassOf );
}

}  // namespace
}  // namespace SimSdkTest
