// A FakeSdk that also keeps the arguments of a few operations, and answers
// some reads with values. Include before platform/shim/SdkNames.h.
#pragma once

#include <vector>

#include "tests/platform/shim/FakeSdk.h"

namespace ShimTest {

// Values that FakeSdk gives these constants (SHIM_TEST_SDK_CONSTANTS).
constexpr int fakeCosQCpuNew = 103;
constexpr int fakeFragNotFirst = 112;

// Records the arguments of a few operations beside the fake's log.
class SpySdk : public FakeSdk {
 public:
   std::vector<long long> actionArgs;
   std::vector<U8> macData;
   bcm_pbmp_t inPortsData;

   int bcm_field_action_add( int unit, bcm_field_entry_t entry, bcm_field_action_t action,
                             U32 param1, U32 param2 ) override {
      actionArgs = { unit, entry, action, param1, param2 };
      return FakeSdk::bcm_field_action_add( unit, entry, action, param1, param2 );
   }
   int bcm_field_qualify_DstMac( int unit, bcm_field_entry_t entry, const bcm_mac_t& data,
                                 const bcm_mac_t& mask ) override {
      macData.assign( data, data + 6 );
      macData.insert( macData.end(), mask, mask + 6 );
      return FakeSdk::bcm_field_qualify_DstMac( unit, entry, data, mask );
   }
   int bcm_field_qualify_IpFrag_get( int unit, bcm_field_entry_t entry,
                                     bcm_field_IpFrag_t* frag ) override {
      *frag = bcm_field_IpFrag_t{ fakeFragNotFirst };
      return FakeSdk::bcm_field_qualify_IpFrag_get( unit, entry, frag );
   }
   int bcm_field_qualify_InPorts( int unit, bcm_field_entry_t entry, bcm_pbmp_t data,
                                  bcm_pbmp_t mask ) override {
      inPortsData = data;
      return FakeSdk::bcm_field_qualify_InPorts( unit, entry, data, mask );
   }
   bcm_pbmp_t PBMP_E_ALL( int unit ) override {
      FakeSdk::PBMP_E_ALL( unit );
      bcm_pbmp_t ports;
      ports.portAdd( 1 );
      ports.portAdd( 130 );
      return ports;
   }
};

}  // namespace ShimTest
