// The configuration language: what each form reads into, what each mistake says, and that
// reading and writing agree.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "cli/config/ConfigText.h"
#include "sim/switch/SwitchProfile.h"

namespace {

using namespace HalyardCli;
using Acl::AclDirection;
using Acl::AclType;

AclSetup parse( const std::string& text ) {
   ConfigOptions options;
   options.interfaceExists = []( Pylon::IntfId intf ) {
      return Sim::defaultProfile().intfHas( intf );
   };
   return parseConfig( text, "test.acl", options );
}

// The diagnostics of a configuration that must not read, one a line.
std::string errorsOf( const std::string& text ) {
   try {
      parse( text );
   } catch ( const ConfigError& e ) {
      return e.what();
   }
   return "(no error)";
}

const Acl::RuleConfig& ruleOf( const AclSetup& s, AclType type, const char* list, U32 seq ) {
   const Acl::AclConfig::Ptr acl = s.config->aclConfig( type, Vesper::Name( list ) );
   EXPECT_TRUE( acl ) << list;
   const Acl::RuleConfig* rule = acl ? acl->rule( seq ) : nullptr;
   EXPECT_TRUE( rule ) << list << " " << seq;
   static const Acl::RuleConfig none;
   return rule ? *rule : none;
}

std::string readFile( const std::string& path ) {
   std::ifstream in( path );
   std::ostringstream s;
   s << in.rdbuf();
   return s.str();
}

TEST( ConfigReader, Ipv4RuleReadsEveryTermAsOperatorsWriteIt ) {
   const AclSetup s = parse(
       "ip access-list web\n"
       "   10 permit tcp 10.1.2.3/8 range 1024 2047 host 10.0.1.10 eq www https syn ack dscp af11 "
       "ttl eq 64 log\n"
       "   deny icmp any any port-unreachable\n" );
   const Acl::RuleConfig& r = ruleOf( s, AclType::ip, "web", 10 );
   const Acl::IpFilter& f = r.ipFilter();
   EXPECT_EQ( r.action(), Acl::Action::permit );
   EXPECT_TRUE( r.log() );
   EXPECT_EQ( f.proto(), 6 );
   // The host bits under the prefix are cleared.
   EXPECT_EQ( f.source(), Pylon::IpAddrWithFullMask( Pylon::IpAddr( 10, 0, 0, 0 ), 0xFF000000 ) );
   EXPECT_EQ( f.destination(),
              Pylon::IpAddrWithFullMask( Pylon::IpAddr( 10, 0, 1, 10 ), 0xFFFFFFFF ) );
   EXPECT_EQ( f.srcPort(), Acl::FieldTerm::range( 1024, 2047 ) );
   EXPECT_EQ( f.dstPort(), Acl::FieldTerm::eq( { 80, 443 } ) );
   EXPECT_EQ( f.tcpFlags(), Acl::tcpFlagSyn | Acl::tcpFlagAck );
   EXPECT_TRUE( f.matchDscp() );
   EXPECT_EQ( f.dscp(), 10 );
   EXPECT_EQ( f.ttl(), Acl::TtlSpec( Acl::TtlOp::eq, 64 ) );

   // A rule without a sequence number follows the last by 10; an ICMP name fixes type and code.
   const Acl::RuleConfig& icmp = ruleOf( s, AclType::ip, "web", 20 );
   EXPECT_EQ( icmp.action(), Acl::Action::deny );
   EXPECT_EQ( icmp.ipFilter().proto(), 1 );
   EXPECT_EQ( icmp.ipFilter().icmpType(), 3 );
   EXPECT_EQ( icmp.ipFilter().icmpCode(), 3 );
}

TEST( ConfigReader, Ipv6RuleKeepsFullMasksAndSetsTheTrafficClassFromDscp ) {
   const AclSetup s = parse(
       "ipv6 access-list v6\n"
       "   10 permit udp 2001:db8::1/32 any eq domain ntp dscp 46 ecn 1 vlan 100 0xfff\n"
       "   20 permit icmpv6 any host 2001:db8::10 echo-request\n"
       "   30 permit icmp any any 1 4\n" );
   const Acl::Ip6Filter& f = ruleOf( s, AclType::ipv6, "v6", 10 ).ip6Filter();
   EXPECT_EQ( f.proto(), 17 );
   EXPECT_EQ( Pylon::valueToStrep( f.source() ), "2001:db8::/32" );
   EXPECT_EQ( f.destinationFullMask(), Pylon::Ip6AddrWithFullMask() );
   EXPECT_EQ( f.dstPort(), Acl::FieldTerm::eq( { 53, 123 } ) );
   EXPECT_EQ( f.trafficClass(), 46 << 2 );
   EXPECT_EQ( f.trafficClassMask(), 0xFC );
   EXPECT_EQ( f.ecn(), 1 );
   EXPECT_EQ( f.ecnMask(), 3 );
   EXPECT_EQ( f.vlan(), 100 );
   EXPECT_EQ( f.vlanMask(), 0xFFF );
   const Acl::Ip6Filter& echo = ruleOf( s, AclType::ipv6, "v6", 20 ).ip6Filter();
   EXPECT_EQ( echo.proto(), 58 );
   EXPECT_EQ( echo.icmpType(), 128 );
   EXPECT_EQ( echo.icmpCode(), Acl::icmpAny );
   // In an IPv6 list, icmp is ICMPv6, and numbers give type and code.
   const Acl::Ip6Filter& numbered = ruleOf( s, AclType::ipv6, "v6", 30 ).ip6Filter();
   EXPECT_EQ( numbered.proto(), 58 );
   EXPECT_EQ( numbered.icmpType(), 1 );
   EXPECT_EQ( numbered.icmpCode(), 4 );
}

TEST( ConfigReader, MacRuleReadsMasksHostsAndEtherTypeNames ) {
   const AclSetup s = parse(
       "mac access-list l2\n"
       "   10 permit 02:00:00:00:0b:11 ff:ff:ff:ff:ff:00 host 0200.0000.00aa arp vlan 10 0xfff\n"
       "   20 deny any any 0x88cc payload header-start 1/0x12345678/0xffff0000 log\n" );
   const Acl::MacFilter& f = ruleOf( s, AclType::mac, "l2", 10 ).macFilter();
   EXPECT_EQ( f.source(), Pylon::EthAddr( 2, 0, 0, 0, 0x0b, 0 ) );
   EXPECT_EQ( f.sourceMask(), Pylon::EthAddr( 0xff, 0xff, 0xff, 0xff, 0xff, 0 ) );
   EXPECT_EQ( f.destination(), Pylon::EthAddr( 2, 0, 0, 0, 0, 0xaa ) );
   EXPECT_EQ( f.destinationMask(), Pylon::EthAddr( 0xff, 0xff, 0xff, 0xff, 0xff, 0xff ) );
   EXPECT_EQ( f.proto(), 0x0806 );
   EXPECT_EQ( f.vlanMask(), 0xFFF );
   const Acl::RuleConfig& lldp = ruleOf( s, AclType::mac, "l2", 20 );
   EXPECT_EQ( lldp.macFilter().proto(), 0x88CC );
   EXPECT_EQ( lldp.macFilter().payload(), Acl::PayloadSpec( Acl::PayloadStart::headerStart,
                                                            { { 1, 0x12345678, 0xFFFF0000 } } ) );
   EXPECT_TRUE( lldp.log() );
}

TEST( ConfigReader, ListsBindingsRemarksAndHardwareSettings ) {
   const AclSetup s = parse(
       "hardware access-list update default-result permit\n"
       "hardware access-list ipv6 permit icmpv6 none\n"
       "hardware access-list resource sharing vlan in\n"
       "ip access-list standard mgmt\n"
       "   10 remark   management hosts  \n"
       "   20 permit host 10.9.9.9 log\n"
       "   25 permit 10.8.0.0/16\n"
       "   deny any\n"
       "interface Ethernet1\n"
       "   ip access-group mgmt in\n"
       "interface Vlan100\n"
       "   ip access-group mgmt out\n" );
   const Acl::AclConfig::Ptr mgmt = s.config->aclConfig( AclType::ip, Vesper::Name( "mgmt" ) );
   ASSERT_TRUE( mgmt );
   EXPECT_TRUE( mgmt->standard() );
   EXPECT_EQ( mgmt->ruleCount(), 4u );
   EXPECT_EQ( mgmt->rule( 10 )->remark(), "management hosts" );
   EXPECT_TRUE( mgmt->rule( 35 ) ) << "the rule without a number follows the highest by 10";
   EXPECT_EQ( mgmt->rule( 35 )->action(), Acl::Action::deny );
   EXPECT_EQ( s.intfConfig->intfAcl( AclType::ip, AclDirection::in, Pylon::IntfId::ethernet( 1 ) ),
              "mgmt" );
   EXPECT_EQ( s.intfConfig->intfAcl( AclType::ip, AclDirection::out,
                                     Pylon::IntfId::vlan( Pylon::VlanId( 100 ) ) ),
              "mgmt" );
   EXPECT_EQ( s.paramConfig->permitDuringAclUpdateConfig(),
              Acl::PermitDuringAclUpdateConfig::permit );
   EXPECT_EQ( s.paramConfig->permitIcmp6TypesConfig(), Acl::PermitIcmp6TypesConfig::none );
   EXPECT_TRUE( s.paramConfig->ingressRaclSharing() );
}

TEST( ConfigReader, UniqueIdsDependOnListAndSequenceOnly ) {
   const AclSetup a = parse( "ip access-list x\n 10 permit ip any any\n 20 deny ip any any\n" );
   const AclSetup b = parse( "ip access-list x\n 10 permit ip any any\n 20 permit tcp any any\n" );
   EXPECT_EQ( ruleOf( a, AclType::ip, "x", 10 ), ruleOf( b, AclType::ip, "x", 10 ) );
   EXPECT_EQ( ruleOf( a, AclType::ip, "x", 20 ).uniqueId(),
              ruleOf( b, AclType::ip, "x", 20 ).uniqueId() );
   const Acl::UniqueId id = ruleUniqueId( AclType::ip, "x", 10 );
   EXPECT_EQ( ruleOf( a, AclType::ip, "x", 10 ).uniqueId(), id );
   EXPECT_FALSE( id.isEmpty() );
   EXPECT_EQ( id.value() & Acl::UniqueId::generatedBit, 0u );
   EXPECT_NE( id, ruleUniqueId( AclType::ip, "x", 20 ) );
   EXPECT_NE( id, ruleUniqueId( AclType::mac, "x", 10 ) );
   EXPECT_NE( id, ruleUniqueId( AclType::ip, "y", 10 ) );
}

TEST( ConfigReader, TheExampleReadsTheSameTwiceAndRoundTripsThroughText ) {
   const std::string text =
       readFile( std::string( HALYARD_SOURCE_DIR ) + "/examples/acls/demo.acl" );
   const AclSetup first = parse( text );
   const AclSetup second = parse( text );
   EXPECT_TRUE( sameConfig( first, second ) );
   const std::string written = writeConfig( first );
   const AclSetup reread = parse( written );
   EXPECT_TRUE( sameConfig( first, reread ) ) << written;
   EXPECT_EQ( writeConfig( reread ), written );
   // sameConfig tells a changed rule.
   const AclSetup changed = parse( text + "ip access-list extra\n 10 permit ip any any\n" );
   EXPECT_FALSE( sameConfig( first, changed ) );
}

TEST( ConfigReader, EveryOptionSurvivesWritingAndReadingBack ) {
   const std::string text =
       "hardware access-list mirroring key-width narrow\n"
       "hardware access-list ipv6 key-width narrow\n"
       "ip access-list all\n"
       " 10 permit tcp 10.0.0.0/255.0.255.0 neq 1 2 3 any gt 1023 dscp 7 ecn 3 ttl neq 9 vlan 5 "
       "0xf "
       "length range 64 1500 vni 4096 255 tni 77 fin psh urg rst payload 0/0x1/0x1 63/0xff/0xff\n"
       " 20 permit 50 any any fragments\n"
       " 30 permit icmp any any 200\n"
       " 40 deny udp any lt 1024 any\n"
       "ipv6 access-list standard six\n"
       " 10 permit 2001:db8::/ffff:0:ffff:: log\n"
       "mac access-list m\n"
       " 10 permit any any inner-vlan 7 0xff mpls-label 1048575 mpls-inner-label 3\n";
   const AclSetup s = parse( text );
   const AclSetup again = parse( writeConfig( s ) );
   EXPECT_TRUE( sameConfig( s, again ) ) << writeConfig( s );
}

struct BadConfig {
   const char* name;
   const char* text;
   const char* error;
};

class ConfigErrors : public testing::TestWithParam<BadConfig> {};

TEST_P( ConfigErrors, NameFileLineWhatIsWrongAndWhatWasExpected ) {
   EXPECT_EQ( errorsOf( GetParam().text ), GetParam().error );
}

const BadConfig kBadConfigs[] = {
    { "UnknownKeyword", "ip access-list a\n 10 permt ip any any\n",
      "test.acl:2: unknown keyword 'permt' in ip access-list a: expected a sequence number, "
      "permit, deny or remark, or ip|ipv6|mac access-list, interface or hardware access-list" },
    { "UnknownTopLevelKeyword", "acl x\n",
      "test.acl:1: unknown keyword 'acl': expected ip|ipv6|mac access-list, interface or hardware "
      "access-list" },
    { "PortOutOfRange", "ip access-list a\n 10 permit tcp any any eq 70000\n",
      "test.acl:2: port 70000 is out of range: expected 0 to 65535" },
    { "UnknownPortName", "ip access-list a\n 10 permit udp any any eq www\n",
      "test.acl:2: 'www' is not a udp port: expected a number 0 to 65535 or a udp port name such "
      "as domain, ntp, snmp, syslog, tftp, bootps" },
    { "PrefixOutOfRange", "ip access-list a\n 10 permit ip 10.0.0.0/33 any\n",
      "test.acl:2: prefix length 33 is out of range: expected 0 to 32" },
    { "Ipv6PrefixOutOfRange", "ipv6 access-list a\n 10 permit ipv6 any 2001:db8::/129\n",
      "test.acl:2: prefix length 129 is out of range: expected 0 to 128" },
    { "SequenceUsedTwice", "ip access-list a\n 10 permit ip any any\n 10 deny ip any any\n",
      "test.acl:3: sequence number 10 is used twice in ip access-list a: expected a new number "
      "(first at line 2)" },
    { "SequenceZero", "mac access-list a\n 0 permit any any\n",
      "test.acl:2: sequence number 0 is out of range: expected 1 to 4294967295" },
    { "UnknownInterface", "interface Ethernet99\n",
      "test.acl:1: unknown interface Ethernet99: expected an interface of the switch" },
    { "MalformedInterface", "interface Eth1\n",
      "test.acl:1: 'Eth1' is not an interface name: expected EthernetN, EthernetN/M, "
      "Port-ChannelN, VlanN or a sub-interface such as Ethernet5.300" },
    { "UnknownList", "interface Ethernet1\n ip access-group nope in\n",
      "test.acl:2: unknown ip access-list nope: expected an ip access-list defined in this "
      "configuration" },
    { "ListOfAnotherType", "mac access-list x\ninterface Ethernet1\n ip access-group x in\n",
      "test.acl:3: unknown ip access-list x: expected an ip access-list defined in this "
      "configuration (x is a mac access-list)" },
    { "Ipv4AddressInIpv6List", "ipv6 access-list a\n 10 permit ipv6 host 10.0.0.1 any\n",
      "test.acl:2: IPv4 address 10.0.0.1 in an ipv6 access-list: expected an IPv6 address" },
    { "Ipv6AddressInIpv4List", "ip access-list a\n 10 permit ip 2001:db8::/32 any\n",
      "test.acl:2: IPv6 address 2001:db8:: in an ip access-list: expected an IPv4 address" },
    { "ReversedRange", "ip access-list a\n 10 permit tcp any any range 2000 1000\n",
      "test.acl:2: range 2000 1000 is reversed: expected the low end first" },
    { "MacWithoutMask", "mac access-list a\n 10 permit 00:11:22:33:44:55 any\n",
      "test.acl:2: MAC address 00:11:22:33:44:55 without mask: expected 'host 00:11:22:33:44:55' "
      "or '00:11:22:33:44:55 MASK'" },
    { "AddressWithoutLength", "ip access-list a\n 10 permit ip 10.0.0.1 any\n",
      "test.acl:2: 10.0.0.1 has no prefix length: expected 'host 10.0.0.1' or '10.0.0.1/LEN'" },
    { "PortsOnIcmp", "ip access-list a\n 10 permit icmp any eq 80 any\n",
      "test.acl:2: port term 'eq' on a rule for protocol 1: expected tcp or udp for port terms" },
    { "FragmentsWithPorts", "ip access-list a\n 10 permit tcp any any eq 80 fragments\n",
      "test.acl:2: 'fragments' with port terms, tcp flags or an ICMP type: expected one or the "
      "other, since later fragments carry no layer 4 header" },
    { "TcpFlagOnUdp", "ip access-list a\n 10 permit udp any any syn\n",
      "test.acl:2: tcp flag 'syn' on a rule that is not for tcp: expected tcp" },
    { "OptionTwice", "ip access-list a\n 10 permit ip any any log log\n",
      "test.acl:2: 'log' given twice: expected each option once" },
    { "MissingDestination", "ip access-list a\n 10 permit tcp any\n",
      "test.acl:2: missing destination: expected any, host ADDR or ADDR/LEN" },
    { "RuleOutsideAList", "10 permit ip any any\n",
      "test.acl:1: unknown keyword '10': expected ip|ipv6|mac access-list, interface or hardware "
      "access-list" },
    { "StandardListWithProtocol", "ip access-list standard s\n 10 permit tcp any any\n",
      "test.acl:2: unexpected 'tcp': expected the source, any, host ADDR or ADDR/LEN" },
    { "AccessGroupTwice",
      "ip access-list a\ninterface Ethernet1\n ip access-group a in\n ip access-group a in\n",
      "test.acl:4: interface Ethernet1 has an ip access-group in already: expected one per type "
      "and direction (first at line 3)" },
    { "BadDirection", "ip access-list a\ninterface Ethernet1\n ip access-group a both\n",
      "test.acl:3: unknown direction 'both': expected in or out" },
    { "ListDefinedTwice", "ip access-list a\nip access-list a\n",
      "test.acl:2: ip access-list a is defined twice: expected one definition (first at line 1)" },
    { "TooManyPayloadWords",
      "mac access-list a\n 10 permit any any payload 0/1/1 1/1/1 2/1/1 3/1/1 4/1/1 5/1/1 6/1/1 "
      "7/1/1 8/1/1\n",
      "test.acl:2: more than 8 payload words: expected at most 8" },
    { "UnknownHardwareSetting", "hardware access-list turbo on\n",
      "test.acl:1: unknown hardware access-list setting 'turbo': expected resource sharing vlan "
      "in, mirroring key-width, ipv6 key-width, ipv6 permit icmpv6 or update default-result" },
};

INSTANTIATE_TEST_SUITE_P( Each, ConfigErrors, testing::ValuesIn( kBadConfigs ),
                          []( const auto& info ) { return std::string( info.param.name ); } );

TEST( ConfigReader, EveryBadLineIsReportedAndTheBodyOfABrokenSectionIsNotBlamed ) {
   EXPECT_EQ( errorsOf( "ip access-list a b\n 10 permit ip any any\n"
                        "ip access-list c\n 10 permit tcp any any eq 99999\n"
                        " 20 permit bogus any any\n" ),
              "test.acl:1: unexpected 'b': expected the end of the line after the list name\n"
              "test.acl:4: port 99999 is out of range: expected 0 to 65535\n"
              "test.acl:5: unknown protocol 'bogus': expected ip, tcp, udp, icmp, a protocol name "
              "or a number 0 to 255" );
}

TEST( ConfigReader, AFileThatCannotBeReadIsAnErrorOnLineZero ) {
   try {
      readConfigFile( "/no/such/file.acl" );
      FAIL() << "read a missing file";
   } catch ( const ConfigError& e ) {
      ASSERT_EQ( e.diagnostics().size(), 1u );
      EXPECT_EQ( e.diagnostics()[0].line, 0u );
      EXPECT_EQ( std::string( e.what() ),
                 "/no/such/file.acl: cannot read: No such file or directory" );
   }
}

}  // namespace
