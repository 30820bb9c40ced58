// Packet files: JSON lines and captures, told apart by the captures' magic numbers.
#include <pcap/pcap.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>

#include "cli/packets/PacketInput.h"

namespace HalyardCli {

namespace {

// pcap (microsecond and nanosecond, either byte order) and pcapng.
constexpr U32 kCaptureMagics[] = { 0xA1B2C3D4, 0xD4C3B2A1, 0xA1B23C4D, 0x4D3CB2A1, 0x0A0D0D0A };

struct PcapClose {
   void operator()( pcap_t* p ) const { pcap_close( p ); }
};

std::string located( std::string_view name, std::string_view where, const std::string& message ) {
   return std::string( name ) + ( where.empty() ? ": " : ":" + std::string( where ) + ": " ) +
          message;
}

}  // namespace

bool isCapture( std::span<const U8> bytes ) {
   if ( bytes.size() < 4 ) {
      return false;
   }
   const U32 magic =
       U32( bytes[0] ) << 24 | U32( bytes[1] ) << 16 | U32( bytes[2] ) << 8 | bytes[3];
   return std::ranges::find( kCaptureMagics, magic ) != std::end( kCaptureMagics );
}

std::vector<Fennel::Packet> readJsonLines( std::string_view text, std::string_view name,
                                           const PacketDefaults& defaults ) {
   std::vector<Fennel::Packet> packets;
   U32 lineNo = 0;
   for ( std::size_t start = 0; start < text.size(); ) {
      std::size_t end = std::min( text.find( '\n', start ), text.size() );
      const std::string_view line = text.substr( start, end - start );
      start = end + 1;
      ++lineNo;
      if ( line.find_first_not_of( " \t\r" ) == std::string_view::npos ) {
         continue;
      }
      const std::string where = std::to_string( lineNo );
      nlohmann::json object;
      try {
         object = nlohmann::json::parse( line );
      } catch ( const nlohmann::json::parse_error& e ) {
         throw PacketError( located( name, where,
                                     "malformed JSON at byte " + std::to_string( e.byte ) +
                                         ": expected one packet object a line" ) );
      } catch ( const nlohmann::json::exception& ) {
         // The reader also throws out_of_range for a number that no 64-bit or double value holds.
         throw PacketError( located( name, where,
                                     "a number too large to read: expected one packet object a "
                                     "line with numbers in their fields' ranges" ) );
      }
      try {
         packets.push_back( packetFromJson( object, defaults ) );
      } catch ( const PacketError& e ) {
         throw PacketError( located( name, where, e.what() ) );
      }
   }
   return packets;
}

std::vector<Fennel::Packet> readCapture( std::span<const U8> bytes, std::string_view name,
                                         const PacketDefaults& defaults ) {
   if ( !defaults.in ) {
      throw PacketError(
          located( name, "", "a capture carries no interfaces: expected --in INTERFACE" ) );
   }
   // libpcap reads from a stream; a read-only memory stream over the bytes serves.
   FILE* stream =
       bytes.empty() ? nullptr : fmemopen( const_cast<U8*>( bytes.data() ), bytes.size(), "rb" );
   if ( !stream ) {
      throw PacketError( located( name, "", "empty capture: expected a pcap or pcapng file" ) );
   }
   char error[PCAP_ERRBUF_SIZE] = {};
   std::unique_ptr<pcap_t, PcapClose> pcap(
       pcap_fopen_offline_with_tstamp_precision( stream, PCAP_TSTAMP_PRECISION_MICRO, error ) );
   if ( !pcap ) {
      std::fclose( stream );
      throw PacketError( located( name, "",
                                  std::string( "not a readable capture (" ) + error +
                                      "): expected a pcap or pcapng file" ) );
   }
   if ( pcap_datalink( pcap.get() ) != DLT_EN10MB ) {
      const char* linkType = pcap_datalink_val_to_name( pcap_datalink( pcap.get() ) );
      throw PacketError( located( name, "",
                                  std::string( "link type " ) +
                                      ( linkType ? linkType : "unknown" ) +
                                      ": expected Ethernet frames" ) );
   }
   std::vector<Fennel::Packet> packets;
   for ( U64 n = 1;; ++n ) {
      pcap_pkthdr* header = nullptr;
      const U8* data = nullptr;
      const int rc = pcap_next_ex( pcap.get(), &header, &data );
      if ( rc == PCAP_ERROR_BREAK ) {
         return packets;
      }
      const std::string where = "packet " + std::to_string( n );
      if ( rc != 1 ) {
         throw PacketError( located( name, "", where + ": " + pcap_geterr( pcap.get() ) ) );
      }
      try {
         packets.push_back( decodeFrame( std::span<const U8>( data, header->caplen ), defaults ) );
      } catch ( const PacketError& e ) {
         throw PacketError( located( name, "", where + ": " + e.what() ) );
      }
   }
}

std::vector<Fennel::Packet> readPackets( std::span<const U8> bytes, std::string_view name,
                                         const PacketDefaults& defaults ) {
   if ( isCapture( bytes ) ) {
      return readCapture( bytes, name, defaults );
   }
   return readJsonLines(
       std::string_view( reinterpret_cast<const char*>( bytes.data() ), bytes.size() ), name,
       defaults );
}

std::vector<Fennel::Packet> readPacketFile( const std::string& path,
                                            const PacketDefaults& defaults ) {
   std::ifstream in( path, std::ios::binary );
   if ( !in ) {
      throw PacketError( path + ": cannot read: " + std::strerror( errno ) );
   }
   std::ostringstream text;
   text << in.rdbuf();
   const std::string bytes = text.str();
   return readPackets(
       std::span<const U8>( reinterpret_cast<const U8*>( bytes.data() ), bytes.size() ), path,
       defaults );
}

}  // namespace HalyardCli
