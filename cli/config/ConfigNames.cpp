#include "cli/config/ConfigNames.h"

#include <algorithm>
#include <span>

namespace HalyardCli::ConfigText {

namespace {

template <typename T>
struct Named {
   std::string_view name;
   T value;
};

template <typename T>
std::optional<T> lookup( std::span<const Named<T> > table, std::string_view name ) {
   const auto it = std::ranges::find( table, name, &Named<T>::name );
   return it == table.end() ? std::nullopt : std::optional<T>( it->value );
}

constexpr Named<U8> kProtocols[] = {
    { "igmp", 2 }, { "tcp", kProtoTcp }, { "udp", kProtoUdp }, { "gre", 47 },   { "esp", 50 },
    { "ahp", 51 }, { "ospf", 89 },       { "pim", 103 },       { "vrrp", 112 }, { "sctp", 132 } };

// Well-known ports as switch configurations name them; most names belong to one protocol.
enum PortProto : U8 { tcpOnly = 1, udpOnly = 2, both = 3 };
struct PortName {
   std::string_view name;
   U16 port;
   PortProto protos;
};
constexpr PortName kPorts[] = { { "echo", 7, both },
                                { "discard", 9, both },
                                { "daytime", 13, both },
                                { "chargen", 19, tcpOnly },
                                { "ftp-data", 20, tcpOnly },
                                { "ftp", 21, tcpOnly },
                                { "ssh", 22, tcpOnly },
                                { "telnet", 23, tcpOnly },
                                { "smtp", 25, tcpOnly },
                                { "time", 37, both },
                                { "nameserver", 42, udpOnly },
                                { "whois", 43, tcpOnly },
                                { "tacacs", 49, both },
                                { "domain", 53, both },
                                { "bootps", 67, udpOnly },
                                { "bootpc", 68, udpOnly },
                                { "tftp", 69, udpOnly },
                                { "gopher", 70, tcpOnly },
                                { "finger", 79, tcpOnly },
                                { "www", 80, tcpOnly },
                                { "http", 80, tcpOnly },
                                { "kerberos", 88, both },
                                { "hostname", 101, tcpOnly },
                                { "pop2", 109, tcpOnly },
                                { "pop3", 110, tcpOnly },
                                { "sunrpc", 111, both },
                                { "ident", 113, tcpOnly },
                                { "nntp", 119, tcpOnly },
                                { "ntp", 123, udpOnly },
                                { "netbios-ns", 137, udpOnly },
                                { "netbios-dgm", 138, udpOnly },
                                { "netbios-ss", 139, both },
                                { "imap", 143, tcpOnly },
                                { "snmp", 161, udpOnly },
                                { "snmptrap", 162, udpOnly },
                                { "xdmcp", 177, udpOnly },
                                { "bgp", 179, tcpOnly },
                                { "irc", 194, tcpOnly },
                                { "dnsix", 195, udpOnly },
                                { "ldap", 389, tcpOnly },
                                { "mobile-ip", 434, udpOnly },
                                { "https", 443, tcpOnly },
                                { "pim-auto-rp", 496, both },
                                { "isakmp", 500, udpOnly },
                                { "biff", 512, udpOnly },
                                { "exec", 512, tcpOnly },
                                { "login", 513, tcpOnly },
                                { "who", 513, udpOnly },
                                { "cmd", 514, tcpOnly },
                                { "syslog", 514, udpOnly },
                                { "lpd", 515, tcpOnly },
                                { "talk", 517, both },
                                { "rip", 520, udpOnly },
                                { "uucp", 540, tcpOnly },
                                { "klogin", 543, tcpOnly },
                                { "kshell", 544, tcpOnly },
                                { "ldaps", 636, tcpOnly },
                                { "ldp", 646, both },
                                { "radius", 1812, udpOnly },
                                { "radius-acct", 1813, udpOnly },
                                { "bfd", 3784, udpOnly },
                                { "bfd-echo", 3785, udpOnly },
                                { "non500-isakmp", 4500, udpOnly },
                                { "vxlan", 4789, udpOnly } };

constexpr IcmpName kIcmp[] = { { "echo-reply", 0, {} },
                               { "unreachable", 3, {} },
                               { "net-unreachable", 3, 0 },
                               { "host-unreachable", 3, 1 },
                               { "protocol-unreachable", 3, 2 },
                               { "port-unreachable", 3, 3 },
                               { "packet-too-big", 3, 4 },
                               { "source-route-failed", 3, 5 },
                               { "network-unknown", 3, 6 },
                               { "host-unknown", 3, 7 },
                               { "host-isolated", 3, 8 },
                               { "dod-net-prohibited", 3, 9 },
                               { "dod-host-prohibited", 3, 10 },
                               { "net-tos-unreachable", 3, 11 },
                               { "host-tos-unreachable", 3, 12 },
                               { "administratively-prohibited", 3, 13 },
                               { "host-precedence-unreachable", 3, 14 },
                               { "precedence-unreachable", 3, 15 },
                               { "source-quench", 4, {} },
                               { "redirect", 5, {} },
                               { "net-redirect", 5, 0 },
                               { "host-redirect", 5, 1 },
                               { "net-tos-redirect", 5, 2 },
                               { "host-tos-redirect", 5, 3 },
                               { "alternate-address", 6, {} },
                               { "echo", 8, {} },
                               { "echo-request", 8, {} },
                               { "router-advertisement", 9, {} },
                               { "router-solicitation", 10, {} },
                               { "time-exceeded", 11, {} },
                               { "ttl-exceeded", 11, 0 },
                               { "reassembly-timeout", 11, 1 },
                               { "parameter-problem", 12, {} },
                               { "option-missing", 12, 1 },
                               { "timestamp-request", 13, {} },
                               { "timestamp-reply", 14, {} },
                               { "information-request", 15, {} },
                               { "information-reply", 16, {} },
                               { "mask-request", 17, {} },
                               { "mask-reply", 18, {} },
                               { "traceroute", 30, {} },
                               { "conversion-error", 31, {} },
                               { "mobile-redirect", 32, {} } };

constexpr IcmpName kIcmp6[] = { { "unreachable", 1, {} },
                                { "no-route", 1, 0 },
                                { "administratively-prohibited", 1, 1 },
                                { "beyond-scope", 1, 2 },
                                { "address-unreachable", 1, 3 },
                                { "port-unreachable", 1, 4 },
                                { "packet-too-big", 2, {} },
                                { "time-exceeded", 3, {} },
                                { "hop-limit-exceeded", 3, 0 },
                                { "reassembly-timeout", 3, 1 },
                                { "parameter-problem", 4, {} },
                                { "echo-request", 128, {} },
                                { "echo-reply", 129, {} },
                                { "mld-query", 130, {} },
                                { "mld-report", 131, {} },
                                { "mld-done", 132, {} },
                                { "router-solicitation", 133, {} },
                                { "router-advertisement", 134, {} },
                                { "neighbor-solicitation", 135, {} },
                                { "neighbor-advertisement", 136, {} },
                                { "redirect", 137, {} },
                                { "router-renumbering", 138, {} },
                                { "mldv2-report", 143, {} } };

constexpr Named<U16> kEtherTypes[] = {
    { "ipv4", 0x0800 }, { "ip", 0x0800 },     { "arp", 0x0806 },
    { "wol", 0x0842 },  { "rarp", 0x8035 },   { "ipv6", 0x86DD },
    { "lacp", 0x8809 }, { "mpls", 0x8847 },   { "mpls-multicast", 0x8848 },
    { "lldp", 0x88CC }, { "macsec", 0x88E5 }, { "ptp", 0x88F7 },
    { "fcoe", 0x8906 } };

constexpr Named<U8> kDscp[] = { { "default", 0 }, { "cs0", 0 },   { "cs1", 8 },  { "af11", 10 },
                                { "af12", 12 },   { "af13", 14 }, { "cs2", 16 }, { "af21", 18 },
                                { "af22", 20 },   { "af23", 22 }, { "cs3", 24 }, { "af31", 26 },
                                { "af32", 28 },   { "af33", 30 }, { "cs4", 32 }, { "af41", 34 },
                                { "af42", 36 },   { "af43", 38 }, { "cs5", 40 }, { "ef", 46 },
                                { "cs6", 48 },    { "cs7", 56 } };

constexpr Named<U8> kEcn[] = { { "non-ect", 0 }, { "ect1", 1 }, { "ect0", 2 }, { "ce", 3 } };

}  // namespace

std::optional<U8> ipProtocolNamed( std::string_view name ) {
   return lookup<U8>( kProtocols, name );
}

std::optional<U16> portNamed( std::string_view name, U8 proto ) {
   const PortProto wanted = proto == kProtoTcp ? tcpOnly : udpOnly;
   for ( const PortName& p : kPorts ) {
      if ( p.name == name && ( p.protos & wanted ) ) {
         return p.port;
      }
   }
   return std::nullopt;
}

std::string_view portNameExamples( U8 proto ) {
   return proto == kProtoTcp ? "www, https, ssh, telnet, smtp, bgp, domain"
                             : "domain, ntp, snmp, syslog, tftp, bootps";
}

const IcmpName* icmpNamed( std::string_view name, bool v6 ) {
   const std::span<const IcmpName> table = v6 ? std::span<const IcmpName>( kIcmp6 ) : kIcmp;
   const auto it = std::ranges::find( table, name, &IcmpName::name );
   return it == table.end() ? nullptr : &*it;
}

std::optional<U16> etherTypeNamed( std::string_view name ) {
   return lookup<U16>( kEtherTypes, name );
}

std::optional<U8> dscpNamed( std::string_view name ) {
   return lookup<U8>( kDscp, name );
}

std::optional<U8> ecnNamed( std::string_view name ) {
   return lookup<U8>( kEcn, name );
}

}  // namespace HalyardCli::ConfigText
