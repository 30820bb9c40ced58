// Internal to the chip model. Sim::GroupIndex: the lookup structure of one group, which finds
// the entry that hits a packet without testing the group's entries one by one.
//
// Every entry that can hit (installed, enabled, not contradictory) holds a position, and
// positions follow the group's lookup order: priority descending, then ordinal, then entry id.
// A dimension is one byte taken from the packet: a byte of the key, of the range checker
// results, of the ingress port, or of a user-defined field (kAbsent when the packet lacks the
// field's base header). For every dimension that some entry constrains and every value of it,
// the index keeps a row: the bit vector of the positions that accept the value. A packet's hit
// is the lowest position whose bit survives the AND of one row per dimension. Words are taken
// in order, so the walk stops at the first word that survives; within a word the most
// selective dimensions come first, so most words are refused after one or two loads.
//
// Invariants:
//   1. A free position's bit is clear in every row and in live_.
//   2. For a live position p and a dimension d, bit p of row (d, v) OR wild (d) is set if and
//      only if the entry at p accepts v in d. Bit p of wild (d) is set if and only if the entry
//      does not constrain d (it accepts every value); then its bit is clear in every row of d.
//   3. Live positions ascend in lookup order (byOrder_); none lies at or beyond end_.
//   4. A dimension stands while at least one live entry constrains it (users > 0).
//
// Updates are incremental and touch the entry's own bit in the rows of the values it accepts
// where it constrains a dimension, and in the wild row where it does not: a byte under a full
// mask is one bit, where a row per value would be kValues bits for every dimension of the
// group. An entry that comes takes a free position between its neighbours in the order, or
// shifts the run of entries after it up to the next free position; one that goes leaves a free
// position. When free positions outnumber live ones the positions are laid out afresh.
#pragma once

#include <array>
#include <compare>
#include <map>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/vesper/Types.h"
#include "sim/chip/ChipTypes.h"
#include "sim/chip/EntryRecord.h"
#include "sim/chip/KeyLayout.h"
#include "sim/chip/PortBitmap.h"

namespace Sim {

class UdfReader;

// What one lookup of a group sees of the packet.
struct IndexProbe {
   const Key& key;
   U64 rangeHolds;
   U32 ingressPort;
   UdfReader& udf;
};

class GroupIndex {
 public:
   // Values of a dimension: 0 to 255, and kAbsent for a user-defined byte the packet lacks.
   static constexpr U32 kAbsent = 256;
   static constexpr U32 kValues = 257;

   // Brings the entry's position in line with the entry: present, with its image, when it can
   // hit; absent otherwise.
   void entryIs( EntryRecord& e );
   void entryDel( EntryId id );
   // The entry's priority or ordinal changed.
   void orderIs( const EntryRecord& e );

   // The entry that hits, or null.
   EntryRecord* firstMatch( const IndexProbe& probe );

   U32 entryCount() const { return static_cast<U32>( keyOf_.size() ); }
   U32 dimensionCount() const { return static_cast<U32>( dims_.size() ); }

 private:
   // The words a dimension reads a byte of: the key's, then the range checker results and the
   // ingress port; kUdfWord marks a byte of a user-defined field.
   static constexpr U8 kRangeWord = KeyLayout::kWords;
   static constexpr U8 kPortWord = KeyLayout::kWords + 1;
   static constexpr U8 kProbeWords = KeyLayout::kWords + 2;
   static constexpr U8 kUdfWord = 0xFF;
   struct DimKey {
      U8 word;
      U8 shift;     // the byte's bit position in the word
      U8 udfBase;   // UdfBase of a user-defined byte
      U16 udfByte;  // its offset from the base
      friend bool operator==( const DimKey&, const DimKey& ) = default;
      friend auto operator<=>( const DimKey&, const DimKey& ) = default;
   };
   // One byte dimension as an entry constrains it: (value & mask) == (data & mask).
   struct Constraint {
      DimKey dim;
      U8 mask;
      U8 data;
      friend bool operator==( const Constraint&, const Constraint& ) = default;
   };
   // What an entry asks of the dimensions.
   struct Shape {
      std::vector<Constraint> bytes;
      std::optional<PortBitmap> refusedPorts;
      friend bool operator==( const Shape&, const Shape& ) = default;
   };
   // An entry's test of one byte dimension, all its constraints on the byte taken together.
   struct ByteTest {
      U8 mask = 0;
      U8 data = 0;
      bool never = false;
   };
   // The lookup order of a group.
   struct OrderKey {
      U32 priority;
      U64 ordinal;
      EntryId id;
      friend bool operator<( const OrderKey& a, const OrderKey& b ) {
         if ( a.priority != b.priority ) {
            return a.priority > b.priority;
         }
         if ( a.ordinal != b.ordinal ) {
            return a.ordinal < b.ordinal;
         }
         return a.id < b.id;
      }
   };
   struct Slot {
      EntryRecord* entry = nullptr;
      Shape shape;
   };
   struct Dim {
      DimKey key;
      U32 users = 0;          // live entries that constrain it
      U64 accepted = 0;       // values those entries accept, summed: the lower, the more selective
      std::vector<U64> rows;  // kValues rows of wordsCap_ words each
      std::vector<U64> wild;  // wordsCap_ words: positions that accept every value
   };
   // One dimension's rows as a lookup reads them: the row of the packet's value, and wild.
   struct ProbeRow {
      const U64* row;
      const U64* wild;
   };

   static OrderKey orderKeyOf( const EntryRecord& e ) { return { e.priority, e.ordinal, e.id }; }
   static Shape shapeOf( const EntryImage& img );
   static std::vector<DimKey> dimsOf( const Shape& s );
   static ByteTest byteTestOf( const Shape& s, const DimKey& d );
   static bool passes( const Shape& s, const DimKey& d, const ByteTest& t, U32 value );
   static U32 acceptedCount( const Shape& s, const DimKey& d );
   static U32 valueOf( const DimKey& d, const U64* words, const IndexProbe& probe );

   // Positions (GroupIndexPositions.cpp).
   U32 positionFor( const OrderKey& k );
   U32 nextFree( U32 from ) const;
   void shiftUp( U32 from, U32 to );
   void capacityIs( U32 words );
   void relayout();

   Dim& dimOf( const DimKey& key );
   // Sets (live) or clears the position's bits in the rows of the values `shape` accepts in
   // the dimension, or in its wild row.
   void positionWrite( U32 pos, Dim& d, const Shape& shape, bool live );
   void reshape( U32 pos, Shape shape );
   void add( EntryRecord& e, Shape shape );
   void remove( EntryId id );
   void dimsSort();

   std::vector<Slot> slots_;  // by position
   std::map<OrderKey, U32> byOrder_;
   std::unordered_map<EntryId, OrderKey> keyOf_;
   U32 end_ = 0;
   std::vector<Dim> dims_;
   std::vector<U64> live_;
   U32 wordsCap_ = 0;
   bool dimsSorted_ = true;
   // Scratch of one lookup: the probe's words and the row of each dimension.
   std::array<U64, kProbeWords> words_{};
   std::vector<ProbeRow> rows_;
};

}  // namespace Sim
