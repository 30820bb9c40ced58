#include "tests/fuzz/FuzzTargets.h"

#include <string_view>

#include "cli/config/ConfigText.h"
#include "cli/packets/PacketInput.h"
#include "cli/packets/SimPacket.h"
#include "sim/switch/SwitchProfile.h"

namespace HalyardFuzz {

namespace {

using namespace HalyardCli;

const Sim::SwitchProfile& profile() {
   static const Sim::SwitchProfile p = Sim::defaultProfile();
   return p;
}

bool onSwitch( Pylon::IntfId intf ) {
   return profile().intfHas( intf );
}

std::string_view textOf( std::span<const U8> input ) {
   return { reinterpret_cast<const char*>( input.data() ), input.size() };
}

PacketDefaults defaults() {
   PacketDefaults d;
   d.in = Pylon::IntfId::ethernet( 1 );
   d.out = Pylon::IntfId::ethernet( 25 );
   d.interfaceExists = onSwitch;
   return d;
}

std::string dump( const Fennel::Packet& p ) {
   return packetToJson( p ).dump();
}

// The chip writes an ICMP header for protocol 1 and 58 in either IP family, where the packet
// form has one only for its own family's ICMP; such packets do not survive the wire.
bool wireKeepsHeaders( const Fennel::Packet& p ) {
   return !( p.ipv4 && p.ipv4->proto == 58 ) && !( p.ipv6 && p.ipv6->next == 1 );
}

// The packet read back from its own frame, with the metadata a frame does not carry.
std::string frameRoundTrip( const Fennel::Packet& p ) {
   if ( !wireKeepsHeaders( p ) ) {
      return "";
   }
   PacketDefaults d;
   d.in = p.in;
   d.out = p.out;
   Fennel::Packet again;
   try {
      again = decodeFrame( frameBytes( p ), d );
   } catch ( const PacketError& e ) {
      return std::string( "its own frame does not decode: " ) + e.what() + "\n  " + dump( p );
   }
   again.routed = p.routed;
   if ( dump( again ) != dump( p ) ) {
      return "frame round trip differs:\n  " + dump( p ) + "\n  " + dump( again );
   }
   return "";
}

}  // namespace

std::string configText( std::span<const U8> input ) {
   ConfigOptions options;
   options.interfaceExists = onSwitch;
   AclSetup setup;
   try {
      setup = parseConfig( textOf( input ), "fuzz.acl", options );
   } catch ( const ConfigError& e ) {
      for ( const ConfigDiagnostic& d : e.diagnostics() ) {
         if ( d.line == 0 || d.message.empty() ) {
            return "a diagnostic without line or message: " + d.text();
         }
      }
      return "";
   }
   const std::string written = writeConfig( setup );
   try {
      const AclSetup again = parseConfig( written, "written.acl", options );
      if ( !sameConfig( setup, again ) ) {
         return "written text reads to another configuration:\n" + written;
      }
      if ( writeConfig( again ) != written ) {
         return "written text does not write back the same:\n" + written;
      }
   } catch ( const ConfigError& e ) {
      return std::string( "written text does not read: " ) + e.what() + "\n" + written;
   }
   return "";
}

std::string jsonPackets( std::span<const U8> input ) {
   std::vector<Fennel::Packet> packets;
   try {
      packets = readJsonLines( textOf( input ), "fuzz.jsonl", defaults() );
   } catch ( const PacketError& ) {
      return "";
   }
   for ( const Fennel::Packet& p : packets ) {
      try {
         const auto again = readJsonLines( dump( p ), "written.jsonl", defaults() );
         if ( again.size() != 1 || dump( again.front() ) != dump( p ) ) {
            return "JSON round trip differs: " + dump( p );
         }
      } catch ( const PacketError& e ) {
         return std::string( "written JSON does not read: " ) + e.what();
      }
      if ( std::string finding = frameRoundTrip( p ); !finding.empty() ) {
         return finding;
      }
   }
   return "";
}

std::string capturePackets( std::span<const U8> input ) {
   std::vector<Fennel::Packet> packets;
   try {
      packets = readCapture( input, "fuzz.pcap", defaults() );
   } catch ( const PacketError& ) {
      return "";
   }
   for ( const Fennel::Packet& p : packets ) {
      if ( std::string finding = frameRoundTrip( p ); !finding.empty() ) {
         return finding;
      }
   }
   return "";
}

}  // namespace HalyardFuzz
