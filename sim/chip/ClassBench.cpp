#include "sim/chip/ClassBench.h"

#include <cstdio>
#include <fstream>
#include <map>
#include <tuple>

namespace Sim::ClassBench {

namespace {

U32 prefixMask( unsigned len ) {
   return len == 0 ? 0 : ~U32{ 0 } << ( 32 - std::min( len, 32u ) );
}

U32 addr( const unsigned ( &o )[4] ) {
   return U32( ( o[0] << 24 ) | ( o[1] << 16 ) | ( o[2] << 8 ) | o[3] );
}

using Block = std::pair<U16, U16>;  // value, mask

// The aligned blocks that cover [lo, hi] exactly, largest first where alignment allows.
std::vector<Block> alignedBlocks( U32 lo, U32 hi ) {
   std::vector<Block> blocks;
   while ( lo <= hi ) {
      U32 size = 1;
      while ( size < 0x10000 && ( lo & ( size * 2 - 1 ) ) == 0 && lo + size * 2 - 1 <= hi ) {
         size *= 2;
      }
      blocks.emplace_back( U16( lo ), U16( ~( size - 1 ) ) );
      lo += size;
   }
   return blocks;
}

// One port term as the entries will carry it.
struct PortTerm {
   std::vector<Block> blocks;  // empty: no qualifier
   RangeCheckerId checker = 0;
};

using CheckerCache = std::map<std::tuple<RangeType, U16, U16>, RangeCheckerId>;

PortTerm portTerm( ChipModel& chip, RangeType type, U16 lo, U16 hi, CheckerCache& cache ) {
   PortTerm t;
   if ( lo == 0 && hi == 0xFFFF ) {
      return t;
   }
   auto blocks = alignedBlocks( lo, hi );
   if ( blocks.size() > 1 ) {
      auto key = std::make_tuple( type, lo, hi );
      auto it = cache.find( key );
      if ( it == cache.end() ) {
         if ( auto id = chip.rangeCheckerCreate( RangeChecker{ type, lo, hi } ) ) {
            it = cache.emplace( key, *id ).first;
         }
      }
      if ( it != cache.end() ) {
         t.checker = it->second;
         return t;
      }
   }
   t.blocks = blocks;
   return t;
}

EntryId programEntry( ChipModel& chip, GroupId group, const Rule& r, U32 priority, U32 queue,
                      const PortTerm& s, const Block& sBlock, const PortTerm& d,
                      const Block& dBlock ) {
   const EntryId e = *chip.entryCreate( group );
   (void)chip.entryPriorityIs( e, priority );
   (void)chip.ipTypeIs( e, IpType::Ipv4Any );
   (void)chip.qualifierIs( e, QualId::SrcIp, r.src, r.srcMask );
   (void)chip.qualifierIs( e, QualId::DstIp, r.dst, r.dstMask );
   if ( r.protoMask ) {
      (void)chip.qualifierIs( e, QualId::IpProtocol, r.proto, r.protoMask );
   }
   if ( !s.blocks.empty() ) {
      (void)chip.qualifierIs( e, QualId::L4SrcPort, sBlock.first, sBlock.second );
   }
   if ( !d.blocks.empty() ) {
      (void)chip.qualifierIs( e, QualId::L4DstPort, dBlock.first, dBlock.second );
   }
   for ( RangeCheckerId c : { s.checker, d.checker } ) {
      if ( c ) {
         (void)chip.rangeCheckAttach( e, c );
      }
   }
   (void)chip.actionIs( e, ActionId::CosQCpuNew, queue, 0 );
   (void)chip.entryInstall( e );
   return e;
}

}  // namespace

std::vector<Rule> readRules( const std::string& path ) {
   std::vector<Rule> rules;
   std::ifstream in( path );
   std::string line;
   while ( std::getline( in, line ) ) {
      unsigned s[4], sl, d[4], dl, s0, s1, d0, d1, p, pm;
      const int n = std::sscanf(
          line.c_str(), "@%u.%u.%u.%u/%u %u.%u.%u.%u/%u %u : %u %u : %u %x/%x", &s[0], &s[1], &s[2],
          &s[3], &sl, &d[0], &d[1], &d[2], &d[3], &dl, &s0, &s1, &d0, &d1, &p, &pm );
      if ( n != 16 ) {
         continue;
      }
      const U32 sm = prefixMask( sl );
      const U32 dm = prefixMask( dl );
      rules.push_back( Rule{ addr( s ) & sm, sm, addr( d ) & dm, dm, U16( s0 ), U16( s1 ),
                             U16( d0 ), U16( d1 ), U8( p ), U8( pm ) } );
   }
   return rules;
}

std::vector<Header> readTrace( const std::string& path ) {
   std::vector<Header> headers;
   std::ifstream in( path );
   std::string line;
   while ( std::getline( in, line ) ) {
      unsigned long src, dst, sport, dport, proto;
      if ( std::sscanf( line.c_str(), "%lu %lu %lu %lu %lu", &src, &dst, &sport, &dport, &proto ) ==
           5 ) {
         headers.push_back(
             Header{ U32( src ), U32( dst ), U16( sport ), U16( dport ), U8( proto ) } );
      }
   }
   return headers;
}

Packet packetOf( const Header& h, U32 in, U32 out ) {
   Packet p = h.proto == kProtoTcp   ? Packet::tcp4( h.src, h.dst, h.srcPort, h.dstPort )
              : h.proto == kProtoUdp ? Packet::udp4( h.src, h.dst, h.srcPort, h.dstPort )
              : h.proto == kProtoIcmp
                  ? Packet::icmp4( h.src, h.dst, U8( h.srcPort >> 8 ), U8( h.srcPort ) )
                  : Packet::ipv4( h.src, h.dst, h.proto );
   return p.ingressPortIs( in ).egressPortIs( out );
}

std::pair<U16, U16> keyedPorts( const Header& h ) {
   if ( h.proto == kProtoTcp || h.proto == kProtoUdp ) {
      return { h.srcPort, h.dstPort };
   }
   return { h.proto == kProtoIcmp ? h.srcPort : U16( 0 ), U16( 0 ) };
}

Programmed program( ChipModel& chip, GroupId group, const std::vector<Rule>& rules,
                    U32 maxEntries ) {
   Programmed out;
   CheckerCache cache;
   for ( std::size_t i = 0; i < rules.size() && out.entries < maxEntries; ++i ) {
      const Rule& r = rules[i];
      // Earlier rules win: priority counts down from the number of rules.
      const U32 priority = U32( rules.size() - i );
      const PortTerm s = portTerm( chip, RangeType::SrcPort, r.srcPortLo, r.srcPortHi, cache );
      const PortTerm d = portTerm( chip, RangeType::DstPort, r.dstPortLo, r.dstPortHi, cache );
      const std::vector<Block> any{ { 0, 0 } };
      std::vector<EntryId> ids;
      for ( const Block& sb : s.blocks.empty() ? any : s.blocks ) {
         for ( const Block& db : d.blocks.empty() ? any : d.blocks ) {
            if ( out.entries < maxEntries ) {
               ids.push_back(
                   programEntry( chip, group, r, priority, U32( i % 8 ), s, sb, d, db ) );
               ++out.entries;
            }
         }
      }
      out.entriesOfRule.push_back( std::move( ids ) );
   }
   return out;
}

std::optional<std::size_t> firstMatch( const std::vector<Rule>& rules, const Header& h ) {
   const auto [sport, dport] = keyedPorts( h );
   for ( std::size_t i = 0; i < rules.size(); ++i ) {
      const Rule& r = rules[i];
      if ( ( h.src & r.srcMask ) == r.src && ( h.dst & r.dstMask ) == r.dst &&
           sport >= r.srcPortLo && sport <= r.srcPortHi && dport >= r.dstPortLo &&
           dport <= r.dstPortHi && ( h.proto & r.protoMask ) == ( r.proto & r.protoMask ) ) {
         return i;
      }
   }
   return std::nullopt;
}

}  // namespace Sim::ClassBench
