#include "platform/vesper/Trace.h"

#include <charconv>

#include "platform/vesper/Exception.h"
#include "platform/vesper/TraceRegistry.h"

namespace Vesper {

namespace {

void checkLevel( int level ) {
   if ( level < traceLevelMin || level > traceLevelMax ) {
      throw RangeException( "trace level < 0 or > 9 not allowed" );
   }
}

std::string_view trimmed( std::string_view text ) {
   const auto first = text.find_first_not_of( " \t" );
   if ( first == std::string_view::npos ) {
      return {};
   }
   const auto last = text.find_last_not_of( " \t" );
   return text.substr( first, last - first + 1 );
}

// One level digit, 0 to 9; -1 if `text` is anything else.
int parseLevel( std::string_view text ) {
   int level = -1;
   const auto [end, ec] = std::from_chars( text.data(), text.data() + text.size(), level );
   if ( ec != std::errc() || end != text.data() + text.size() || level < traceLevelMin ||
        level > traceLevelMax ) {
      return -1;
   }
   return level;
}

struct ParsedItem {
   std::string namePattern;
   U32 levelMask;
};

ParsedItem parseItem( std::string_view item ) {
   const auto fail = [item]() -> ParsedItem {
      throw ParseException( "trace setting \"" + std::string( item ) +
                            "\" is not pattern, pattern/level or pattern/first-last" );
   };
   const auto slash = item.find( '/' );
   const std::string_view pattern = trimmed( item.substr( 0, slash ) );
   if ( pattern.empty() ) {
      return fail();
   }
   if ( slash == std::string_view::npos ) {
      return { std::string( pattern ), traceLevelMask( traceLevelMin, traceLevelMax ) };
   }
   const std::string_view levels = trimmed( item.substr( slash + 1 ) );
   const auto dash = levels.find( '-' );
   const int first = parseLevel( levels.substr( 0, dash ) );
   const int last =
       dash == std::string_view::npos ? first : parseLevel( levels.substr( dash + 1 ) );
   if ( first < 0 || last < first ) {
      return fail();
   }
   return { std::string( pattern ), traceLevelMask( first, last ) };
}

}  // namespace

TraceHandle::TraceHandle( std::string name ) : name_( std::move( name ) ) {
   TraceRegistry::instance().handleIs( *this );
}

TraceHandle::~TraceHandle() {
   TraceRegistry::instance().handleDel( *this );
}

void TraceHandle::levelIs( int level, bool on ) {
   checkLevel( level );
   TraceRegistry::instance().handleLevelIs( *this, 1u << level, on );
}

void TraceHandle::write( int level, std::string_view line ) const {
   if ( enabled( level ) ) {
      TraceRegistry::instance().write( *this, level, line );
   }
}

void traceLevelIs( std::string_view namePattern, int level, bool on ) {
   checkLevel( level );
   TraceRegistry::instance().levelIs( namePattern, 1u << level, on );
}

void traceSettingIs( std::string_view setting ) {
   std::vector<ParsedItem> items;
   while ( !setting.empty() ) {
      const auto comma = setting.find( ',' );
      const std::string_view item = trimmed( setting.substr( 0, comma ) );
      if ( !item.empty() ) {
         items.push_back( parseItem( item ) );
      }
      setting = comma == std::string_view::npos ? std::string_view() : setting.substr( comma + 1 );
   }
   for ( const ParsedItem& item : items ) {
      TraceRegistry::instance().levelIs( item.namePattern, item.levelMask, true );
   }
}

void traceSinkIs( TraceSink sink ) {
   TraceRegistry::instance().sinkIs( std::move( sink ) );
}

bool traceNameMatches( std::string_view pattern, std::string_view name ) {
   // Greedy match with one backtrack point: the most recent '*' and the
   // position in `name` it has absorbed up to.
   size_t p = 0, n = 0;
   size_t starP = std::string_view::npos, starN = 0;
   while ( n < name.size() ) {
      if ( p < pattern.size() && ( pattern[p] == '?' || pattern[p] == name[n] ) ) {
         ++p;
         ++n;
      } else if ( p < pattern.size() && pattern[p] == '*' ) {
         starP = p++;
         starN = n;
      } else if ( starP != std::string_view::npos ) {
         p = starP + 1;
         n = ++starN;
      } else {
         return false;
      }
   }
   while ( p < pattern.size() && pattern[p] == '*' ) {
      ++p;
   }
   return p == pattern.size();
}

TraceCapture::TraceCapture( std::string namePattern, bool enableAllLevels )
    : namePattern_( std::move( namePattern ) ), enableAllLevels_( enableAllLevels ) {
   TraceRegistry::instance().captureIs( *this );
}

TraceCapture::~TraceCapture() {
   TraceRegistry::instance().captureDel( *this );
}

std::vector<std::string> TraceCapture::lines() const {
   return TraceRegistry::instance().captureLines( *this );
}

void TraceCapture::clear() {
   TraceRegistry::instance().captureClear( *this );
}

void TraceTestAccess::applyEnvironment() {
   TraceRegistry::instance().applyEnvironment();
}

}  // namespace Vesper

namespace Halyard {

namespace {
Vesper::TraceHandle& bcmFpCmdHandle() {
   static Vesper::TraceHandle handle( "Halyard::bcmFpCmd" );
   return handle;
}
}  // namespace

Vesper::TraceHandle& bcmFpCmd = bcmFpCmdHandle();

}  // namespace Halyard
