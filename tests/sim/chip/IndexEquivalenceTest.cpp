// The group index against the plain scan: two chips receive the same random entries (key
// terms of every width, InPorts, range checkers, user-defined fields, ties of priority), the
// same random changes (install, remove, enable, priority, ordinal, reprogramming, destroy) and
// the same random packets; every verdict must be the same, hit by hit.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <vector>

#include "sim/chip/ChipModel.h"

namespace Sim {
namespace {

constexpr U32 kPorts = 16;
constexpr U32 kPackets = 100000;
constexpr GroupId kVfp = 1, kIfpHigh = 2, kIfpLow = 3, kEfp = 4;

// Small pools of values, so that entries and packets meet often.
const U32 kAddrs[] = { 0x0A000001, 0x0A000002, 0x0A0001FF, 0x0A010000, 0xC0A80001, 0xC0A80102 };
const U16 kL4Ports[] = { 0, 22, 53, 80, 443, 1024, 8080, 65535 };
const U8 kProtos[] = { kProtoTcp, kProtoUdp, kProtoIcmp, 47 };

class Twins {
 public:
   Twins()
       : indexed_( ChipConfig{ kPorts, 0, 8, 4, LookupMethod::Indexed } ),
         scan_( ChipConfig{ kPorts, 0, 8, 4, LookupMethod::Scan } ) {
      both( [&]( ChipModel& c ) {
         EXPECT_EQ( Status::Ok, c.groupCreate( kVfp, Stage::Vfp, 5 ) );
         EXPECT_EQ( Status::Ok, c.groupCreate( kIfpHigh, Stage::Ifp, 9 ) );
         EXPECT_EQ( Status::Ok, c.groupCreate( kIfpLow, Stage::Ifp, 3 ) );
         EXPECT_EQ( Status::Ok, c.groupCreate( kEfp, Stage::Efp, 5 ) );
         const RangeChecker checkers[] = { { RangeType::SrcPort, 1024, 65535 },
                                           { RangeType::DstPort, 0, 1023 },
                                           { RangeType::DstPort, 80, 443 },
                                           { RangeType::IpLength, 40, 60 } };
         for ( const RangeChecker& r : checkers ) {
            EXPECT_TRUE( c.rangeCheckerCreate( r ).has_value() );
         }
         EXPECT_TRUE( c.udfCreate( UdfChunk{ UdfBase::L4Payload, 0, 2 } ).has_value() );
         EXPECT_TRUE( c.udfCreate( UdfChunk{ UdfBase::L3Header, 12, 4 } ).has_value() );
      } );
   }

   void both( const std::function<void( ChipModel& )>& f ) {
      f( indexed_ );
      f( scan_ );
   }
   ChipModel& indexed() { return indexed_; }
   ChipModel& scan() { return scan_; }

 private:
   ChipModel indexed_;
   ChipModel scan_;
};

class IndexEquivalence : public ::testing::Test {
 protected:
   U32 pick( U32 n ) { return std::uniform_int_distribution<U32>( 0, n - 1 )( rng_ ); }
   bool chance( U32 percent ) { return pick( 100 ) < percent; }
   template <typename T, std::size_t N>
   T from( const T ( &values )[N] ) {
      return values[pick( N )];
   }
   // A mask of `width` bits: whole, a prefix, or random bits.
   U64 maskOf( U32 width ) {
      const U64 all = width == 64 ? ~U64{ 0 } : ( U64{ 1 } << width ) - 1;
      switch ( pick( 3 ) ) {
         case 0:
            return all;
         case 1:
            return all & ~( ( U64{ 1 } << pick( width ) ) - 1 );
         default:
            return all & ( U64( rng_() ) << 32 | rng_() );
      }
   }

   void programKey( EntryId e, Stage stage ) {
      twins_.both( [&]( ChipModel& c ) {
         c.qualifiersDelAll( e );
         c.actionsDelAll( e );
      } );
      auto qual = [&]( QualId q, U64 data, U32 width ) {
         const U64 mask = maskOf( width );
         twins_.both(
             [&]( ChipModel& c ) { EXPECT_EQ( Status::Ok, c.qualifierIs( e, q, data, mask ) ); } );
      };
      if ( chance( 60 ) )
         qual( QualId::SrcIp, from( kAddrs ), 32 );
      if ( chance( 60 ) )
         qual( QualId::DstIp, from( kAddrs ), 32 );
      if ( chance( 40 ) )
         qual( QualId::IpProtocol, from( kProtos ), 8 );
      if ( chance( 40 ) )
         qual( QualId::L4DstPort, from( kL4Ports ), 16 );
      if ( chance( 30 ) )
         qual( QualId::L4SrcPort, from( kL4Ports ), 16 );
      if ( chance( 10 ) )
         qual( QualId::Dscp, pick( 256 ), 8 );
      if ( chance( 10 ) )
         qual( QualId::TcpControl, kTcpSyn, 8 );
      if ( chance( 10 ) ) {
         const IpFrag f = static_cast<IpFrag>( pick( 5 ) );
         twins_.both( [&]( ChipModel& c ) { EXPECT_EQ( Status::Ok, c.ipFragIs( e, f ) ); } );
      }
      if ( stage == Stage::Efp && chance( 50 ) )
         qual( QualId::OutPort, pick( kPorts ), 8 );
      if ( stage != Stage::Efp && chance( 30 ) ) {
         PortBitmap data, mask;
         for ( U32 p = 0; p < kPorts; ++p ) {
            if ( chance( 50 ) )
               data.set( p );
            if ( chance( 50 ) )
               mask.set( p );
         }
         twins_.both(
             [&]( ChipModel& c ) { EXPECT_EQ( Status::Ok, c.inPortsIs( e, data, mask ) ); } );
      }
      for ( RangeCheckerId r = 1; r <= 4; ++r ) {
         if ( chance( 12 ) ) {
            const bool invert = chance( 30 );
            twins_.both( [&]( ChipModel& c ) {
               EXPECT_EQ( Status::Ok, c.rangeCheckAttach( e, r, invert ) );
            } );
         }
      }
      for ( UdfId u = 1; u <= 2; ++u ) {
         if ( chance( 8 ) ) {
            const U8 len = u == 1 ? 2 : 4;
            std::vector<U8> data( len ), mask( len );
            for ( U8 i = 0; i < len; ++i ) {
               data[i] = static_cast<U8>( pick( 4 ) );
               mask[i] = chance( 50 ) ? 0xFF : 0x03;
            }
            twins_.both(
                [&]( ChipModel& c ) { EXPECT_EQ( Status::Ok, c.udfDataIs( e, u, data, mask ) ); } );
         }
      }
      const ActionId a = stage == Stage::Vfp ? ActionId::ClassSourceSet : ActionId::CosQCpuNew;
      const U32 param = pick( 8 );
      twins_.both( [&]( ChipModel& c ) { EXPECT_EQ( Status::Ok, c.actionIs( e, a, param, 0 ) ); } );
      if ( stage != Stage::Vfp && chance( 20 ) ) {
         twins_.both( [&]( ChipModel& c ) {
            EXPECT_EQ( Status::Ok, c.actionIs( e, ActionId::Drop, 0, 0 ) );
         } );
      }
   }

   void addEntry() {
      const GroupId groups[] = { kVfp, kIfpHigh, kIfpLow, kIfpLow, kEfp };
      const GroupId g = from( groups );
      const EntryId e = nextId_++;
      const U32 priority = pick( 4 ) * 10;  // few values: ties are common
      twins_.both( [&]( ChipModel& c ) {
         EXPECT_EQ( Status::Ok, c.entryCreateWithId( g, e ) );
         EXPECT_EQ( Status::Ok, c.entryPriorityIs( e, priority ) );
      } );
      const Stage stage = twins_.indexed().group( g )->stage;
      programKey( e, stage );
      twins_.both( [&]( ChipModel& c ) { EXPECT_EQ( Status::Ok, c.entryInstall( e ) ); } );
      live_.push_back( { e, stage } );
   }

   // One random change of a live entry, the same on both chips.
   void change() {
      if ( live_.empty() ) {
         return;
      }
      const std::size_t i = pick( U32( live_.size() ) );
      const EntryId e = live_[i].first;
      const Stage stage = live_[i].second;
      switch ( pick( 7 ) ) {
         case 0:
            twins_.both( [&]( ChipModel& c ) { (void)c.entryRemove( e ); } );
            break;
         case 1:
            twins_.both( [&]( ChipModel& c ) { EXPECT_EQ( Status::Ok, c.entryInstall( e ) ); } );
            break;
         case 2: {
            const bool on = chance( 50 );
            twins_.both( [&]( ChipModel& c ) { (void)c.entryEnableIs( e, on ); } );
            break;
         }
         case 3: {
            const U32 priority = pick( 4 ) * 10;
            twins_.both( [&]( ChipModel& c ) {
               EXPECT_EQ( Status::Ok, c.entryPriorityIs( e, priority ) );
            } );
            break;
         }
         case 4: {
            const U64 ordinal = pick( 1000 );
            twins_.both(
                [&]( ChipModel& c ) { EXPECT_EQ( Status::Ok, c.entryOrdinalIs( e, ordinal ) ); } );
            break;
         }
         case 5:
            // Reprogrammed: the chip sees it at the next install.
            programKey( e, stage );
            if ( chance( 50 ) ) {
               twins_.both( [&]( ChipModel& c ) { EXPECT_EQ( Status::Ok, c.entryInstall( e ) ); } );
            }
            break;
         default:
            twins_.both( [&]( ChipModel& c ) { EXPECT_EQ( Status::Ok, c.entryDestroy( e ) ); } );
            live_.erase( live_.begin() + std::ptrdiff_t( i ) );
            break;
      }
   }

   Packet randomPacket() {
      Packet p =
          pick( 3 ) == 0
              ? Packet::udp4( from( kAddrs ), from( kAddrs ), from( kL4Ports ), from( kL4Ports ) )
          : pick( 4 ) == 0 ? Packet::icmp4( from( kAddrs ), from( kAddrs ), U8( pick( 10 ) ), 0 )
                           : Packet::tcp4( from( kAddrs ), from( kAddrs ), from( kL4Ports ),
                                           from( kL4Ports ), chance( 50 ) ? kTcpSyn : 0 );
      if ( chance( 10 ) )
         p.fragmentIs( chance( 50 ), chance( 50 ) ? 0 : 8 );
      if ( chance( 30 ) )
         p.payloadIs( { U8( pick( 4 ) ), U8( pick( 4 ) ), 0, 1 } );
      p.tosIs( U8( pick( 4 ) ) );
      PortBitmap out;
      out.set( 1 + pick( kPorts - 1 ) );
      if ( chance( 30 ) )
         out.set( 1 + pick( kPorts - 1 ) );
      return p.ingressPortIs( pick( kPorts ) ).egressPortsIs( out );
   }

   std::mt19937 rng_{ 20240611 };
   Twins twins_;
   std::vector<std::pair<EntryId, Stage> > live_;
   EntryId nextId_ = 1;
};

TEST_F( IndexEquivalence, SameVerdictAsTheScanUnderRandomEntriesChangesAndPackets ) {
   for ( int i = 0; i < 300; ++i ) {
      addEntry();
   }
   Verdict fromIndex, fromScan;
   U64 hits = 0;
   for ( U32 n = 0; n < kPackets; ++n ) {
      if ( n % 25000 == 12500 ) {
         // Most entries leave at once: the survivors keep their places among free ones.
         for ( const auto& entry : live_ ) {
            const EntryId e = entry.first;
            if ( chance( 80 ) ) {
               twins_.both( [&]( ChipModel& c ) { (void)c.entryRemove( e ); } );
            }
         }
      }
      if ( n % 400 == 0 ) {
         for ( int k = 0; k < 10; ++k ) {
            change();
         }
         for ( int k = 0; k < 6; ++k ) {
            addEntry();
         }
      }
      const Packet p = randomPacket();
      twins_.indexed().lookup( p, fromIndex );
      twins_.scan().lookup( p, fromScan );
      ASSERT_EQ( fromScan.hits, fromIndex.hits )
          << "packet " << n << "\n scan:  " << fromScan.text() << "\n index: " << fromIndex.text();
      ASSERT_EQ( fromScan.text(), fromIndex.text() ) << "packet " << n;
      hits += fromIndex.hits.size();
   }
   // The pools make entries and packets meet: most packets hit something.
   EXPECT_GT( hits, U64( kPackets ) );
   for ( const auto& [e, stage] : live_ ) {
      ASSERT_EQ( twins_.scan().entryHits( e ), twins_.indexed().entryHits( e ) ) << "entry " << e;
   }
}

}  // namespace
}  // namespace Sim
