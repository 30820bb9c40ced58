// Switch profiles in text: the shipped example reads back as the built-in default, the
// canonical text round-trips, and every broken rule is reported with its file, line and text.
#include <gtest/gtest.h>

#include <string>

#include "sim/switch/ProfileText.h"
#include "sim/switch/SwitchProfile.h"

namespace SimSwitchTest {
namespace {

using Pylon::IntfId;
using Sim::parseProfile;
using Sim::ProfileError;
using Sim::SwitchProfile;

const std::string kExample =
    std::string( HALYARD_SOURCE_DIR ) + "/examples/switches/default.switch";

TEST( ProfileTextTest, ExampleFileReadsBackAsTheDefaultProfile ) {
   const SwitchProfile read = Sim::readProfileFile( kExample );
   EXPECT_EQ( Sim::defaultProfile(), read );
   EXPECT_EQ( Sim::defaultProfile(), parseProfile( Sim::profileText( read ), "again" ) );
}

TEST( ProfileTextTest, CanonicalTextCompressesPortRunsAndRoundTrips ) {
   SwitchProfile p;
   p.nameIs( "lab" );
   p.flagsIs( Sim::SwitchFlags{ true, false, true, true } );
   p.unitIs( Sim::UnitDef{ 3, "jericho", 7, 0, "" } );
   p.ethernetIs( 1, 3, 1 );
   p.ethernetIs( 2, 3, 2 );
   p.ethernetIs( 3, 3, 9 );   // breaks the run: not the next port
   p.ethernetIs( 5, 3, 10 );  // breaks the run: not the next number
   p.portChannelIs( 4, { IntfId::ethernet( 3 ), IntfId::ethernet( 1 ) } );
   p.vlanIntfIs( 4094, { IntfId::portChannel( 4 ) } );
   p.subIntfIs( IntfId::portChannel( 4 ).subIntf( 7 ), 70 );

   Sim::UnitDef small{ 4, "tomahawk3", 8, 0, "" };
   small.slices[std::size_t( Sim::Stage::Ifp )] = 4;
   small.slices[std::size_t( Sim::Stage::Efp )] = 1;
   small.rangeCheckers = 16;
   small.udfChunks = 0;
   p.unitIs( small );

   const std::string text = Sim::profileText( p );
   EXPECT_EQ(
       "name lab\n"
       "linecard Linecard1\n"
       "epoch Epoch1\n"
       "flag fabric\n"
       "flag vlan-block-bypass\n"
       "flag egress-filter-per-port\n"
       "unit 3 kind jericho module 7 ports 65 name chip3\n"
       "unit 4 kind tomahawk3 module 8 ports 161 name chip4 slices ifp:4,efp:1 range-checkers 16 "
       "udf-chunks 0\n"
       "ethernet 1-2 unit 3 port 1\n"
       "ethernet 3 unit 3 port 9\n"
       "ethernet 5 unit 3 port 10\n"
       "port-channel 4 members Ethernet3 Ethernet1\n"
       "vlan 4094 members Port-Channel4\n"
       "sub-interface Port-Channel4.7 vlan 70\n",
       text );
   EXPECT_EQ( p, parseProfile( text, "lab.switch" ) );
}

struct ErrorCase {
   const char* label;
   std::string text;
   U32 line;
   std::string message;
};

std::ostream& operator<<( std::ostream& os, const ErrorCase& c ) {
   return os << c.label;
}

// Two lines every case builds on, so that the broken line is line 3 unless the case says.
const std::string kBase =
    "unit 0 kind trident3 module 1 ports 33\n"
    "ethernet 1-4 unit 0 port 1\n";

class ProfileErrorTest : public ::testing::TestWithParam<ErrorCase> {};

TEST_P( ProfileErrorTest, NamesFileLineAndMessage ) {
   const ErrorCase& c = GetParam();
   try {
      parseProfile( c.text, "test.switch" );
      FAIL() << "no error for " << c.label;
   } catch ( const ProfileError& e ) {
      EXPECT_EQ( "test.switch", e.file() );
      EXPECT_EQ( c.line, e.line() );
      EXPECT_EQ( c.message, e.message() );
      EXPECT_EQ( "test.switch:" + std::to_string( c.line ) + ": " + c.message,
                 std::string( e.what() ) );
   }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, ProfileErrorTest,
    ::testing::Values(
        ErrorCase{ "unknownDirective", kBase + "frob 1\n", 3,
                   "unknown directive 'frob'; expected one of: name, linecard, epoch, flag, "
                   "unit, ethernet, port-channel, vlan, sub-interface" },
        ErrorCase{ "unknownKind", kBase + "unit 1 kind trident9 module 2\n", 3,
                   "unknown chip kind 'trident9'; known kinds: trident2, trident2plus, "
                   "trident3, tomahawk, tomahawk3, jericho" },
        ErrorCase{ "unitTwice", kBase + "unit 0 kind tomahawk module 2\n", 3,
                   "unit 0 is defined twice" },
        ErrorCase{ "moduleTwice", kBase + "unit 1 kind tomahawk module 1\n", 3,
                   "module 1 is already the module of unit 0" },
        ErrorCase{ "moduleRange", kBase + "unit 1 kind tomahawk module 255\n", 3,
                   "module 255 is out of range: 0 to 254" },
        ErrorCase{ "tooManyPorts", kBase + "unit 1 kind tomahawk module 2 ports 300\n", 3,
                   "unit 1 has 300 ports; a tomahawk unit has 3 to 129" },
        ErrorCase{ "tooFewHiGigPorts", kBase + "unit 1 kind jericho module 2 ports 9\n", 3,
                   "unit 1 has 9 ports; a jericho unit has 10 to 65" },
        ErrorCase{ "missingModule", kBase + "unit 1 kind tomahawk\n", 3,
                   "'unit' is missing 'module'" },
        ErrorCase{ "unknownKey", kBase + "unit 1 kind tomahawk module 2 speed 10\n", 3,
                   "unknown key 'speed' in 'unit'; expected kind, module, ports, name, slices, "
                   "range-checkers, udf-chunks" },
        ErrorCase{ "moreSlicesThanTheKind", kBase + "unit 1 kind tomahawk module 2 slices ifp:13\n",
                   3, "unit 1: IFP slices 13 is out of range: a tomahawk unit has 2 to 12" },
        ErrorCase{ "tooFewIfpSlices", kBase + "unit 1 kind tomahawk module 2 slices vfp:1,ifp:1\n",
                   3, "unit 1: IFP slices 1 is out of range: a tomahawk unit has 2 to 12" },
        ErrorCase{ "unknownStage", kBase + "unit 1 kind tomahawk module 2 slices tcam:4\n", 3,
                   "expected slices as STAGE:COUNT[,STAGE:COUNT...] with STAGE vfp, ifp or efp, "
                   "not 'tcam:4'" },
        ErrorCase{ "stageTwice", kBase + "unit 1 kind tomahawk module 2 slices ifp:4,ifp:3\n", 3,
                   "the slices of 'ifp' are given twice" },
        ErrorCase{ "moreRangeCheckers", kBase + "unit 1 kind trident2 module 2 range-checkers 32\n",
                   3, "unit 1: range checkers 32 is out of range: a trident2 unit has 0 to 24" },
        ErrorCase{ "keyTwice", kBase + "unit 1 kind tomahawk module 2 module 3\n", 3,
                   "'module' is given twice" },
        ErrorCase{ "keyWithoutValue", kBase + "unit 1 kind tomahawk module\n", 3,
                   "'module' has no value" },
        ErrorCase{ "notANumber", kBase + "unit x kind tomahawk module 2\n", 3,
                   "expected a unit number, found 'x'" },
        ErrorCase{ "chipNameTwice", kBase + "unit 1 kind tomahawk module 2 name chip0\n", 3,
                   "chip name 'chip0' is already the name of unit 0" },
        ErrorCase{ "linkPortIsNoFrontPanelPort", kBase + "ethernet 5 unit 0 port 32\n", 3,
                   "port 32 of unit 0 is not a front-panel port; they are 1 to 31" },
        ErrorCase{ "cpuPortIsNoFrontPanelPort", kBase + "ethernet 5 unit 0 port 0\n", 3,
                   "port 0 of unit 0 is not a front-panel port; they are 1 to 31" },
        ErrorCase{ "portTaken", kBase + "ethernet 5 unit 0 port 1\n", 3,
                   "port 1 of unit 0 is already Ethernet1" },
        ErrorCase{ "ethernetTwice", kBase + "ethernet 4 unit 0 port 9\n", 3,
                   "Ethernet4 is defined twice" },
        ErrorCase{ "unitUndefined", kBase + "ethernet 5 unit 3 port 9\n", 3,
                   "unit 3 is not defined" },
        ErrorCase{ "rangeBackwards", kBase + "ethernet 9-5 unit 0 port 9\n", 3,
                   "the range '9-5' runs backwards" },
        ErrorCase{ "rangeRunsOffTheUnit", kBase + "ethernet 5-40 unit 0 port 5\n", 3,
                   "port 32 of unit 0 is not a front-panel port; they are 1 to 31" },
        ErrorCase{ "memberUndefined", kBase + "port-channel 7 members Ethernet1 Ethernet9\n", 3,
                   "Ethernet9 is not a front-panel port of this switch" },
        ErrorCase{ "memberTwice", kBase + "port-channel 7 members Ethernet1 Ethernet1\n", 3,
                   "Ethernet1 is named twice in Port-Channel7" },
        ErrorCase{ "memberOfTwoPortChannels",
                   kBase + "port-channel 7 members Ethernet1\n"
                           "port-channel 8 members Ethernet2 Ethernet1\n",
                   4, "Ethernet1 is already a member of Port-Channel7" },
        ErrorCase{ "membersKeywordMissing", kBase + "port-channel 7 Ethernet1\n", 3,
                   "expected 'port-channel N members INTF...'" },
        ErrorCase{ "vlanRange", kBase + "vlan 5000 members Ethernet1\n", 3,
                   "VLAN 5000 is out of range: 1 to 4094" },
        ErrorCase{ "vlanMemberUndefined", kBase + "vlan 10 members Ethernet1 Port-Channel3\n", 3,
                   "Port-Channel3 is not a front-panel port or port-channel of this switch" },
        ErrorCase{ "vlanMemberIsAVlan", kBase + "vlan 10 members Vlan10\n", 3,
                   "Vlan10 is not a front-panel port or port-channel of this switch" },
        ErrorCase{ "badInterfaceName", kBase + "vlan 10 members Ethx\n", 3,
                   "'Ethx' is not an interface name: expected EthernetN, EthernetN/M, "
                   "Port-ChannelN, VlanN, or a sub-interface EthernetN.S, EthernetN/M.S, "
                   "Port-ChannelN.S" },
        ErrorCase{ "notASubInterface", kBase + "sub-interface Ethernet1 vlan 10\n", 3,
                   "Ethernet1 is not a sub-interface name" },
        ErrorCase{ "subInterfaceParentUndefined", kBase + "sub-interface Ethernet9.10 vlan 10\n", 3,
                   "Ethernet9 is not a front-panel port or port-channel of this switch" },
        ErrorCase{ "subInterfaceVlanTwice",
                   kBase + "sub-interface Ethernet1.10 vlan 10\n"
                           "sub-interface Ethernet1.11 vlan 10\n",
                   4, "VLAN 10 is already the VLAN of Ethernet1.10" },
        ErrorCase{ "unknownFlag", kBase + "flag turbo\n", 3,
                   "unknown flag 'turbo'; known flags: fabric, vlan-blocking, vlan-block-bypass, "
                   "egress-filter-per-port" },
        ErrorCase{ "nameOfTwoWords", kBase + "name two words\n", 3, "expected 'name NAME'" },
        ErrorCase{ "noUnit", "# only a comment\nflag fabric\n", 2,
                   "the profile defines no unit" } ),
    []( const ::testing::TestParamInfo<ErrorCase>& info ) { return info.param.label; } );

}  // namespace
}  // namespace SimSwitchTest
