// Internal to sim/record: how a call of a member function is written to a CallLog and
// replayed from it, derived from the member's own signature.
//
// Op<&Class::member>::record( log, manager, object, args... ) writes the record and makes the
// call on `object`; Op<...>::replay is the pre-bound call stored at the head of the record.
// Parameters are kept by kind (Arg): a trivially copyable value or const reference as its
// bytes; a non-const reference or pointer as the value it refers to (CallLog.h, invariant 2);
// an entry description in the log's text pool. An argument of any other kind does not compile.
// Pointers to arrays of bytes or ids (the UDF data calls, the range checker list) are written
// by hand in RecordingSdk.cpp.
#pragma once

#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "sim/record/CallLog.h"

namespace Sim::record {

template <class P>
struct Arg;

template <class P>
concept ByValue =
    !std::is_pointer_v<P> &&
    !(std::is_lvalue_reference_v<P> &&
      !std::is_const_v<
          std::remove_reference_t<P>>)&&std::is_trivially_copyable_v<std::remove_cvref_t<P>>;

template <class P>
concept ByMutableRef =
    std::is_lvalue_reference_v<P> && !std::is_const_v<std::remove_reference_t<P>>;

template <class P>
concept ByMutablePointer = std::is_pointer_v<P> && !std::is_const_v<std::remove_pointer_t<P>>;

template <class P>
requires ByValue<P>
struct Arg<P> {
   using T = std::remove_cvref_t<P>;
   static void write( CallLog& log, const T& value ) { log.put( &value, sizeof( T ) ); }
   struct Held {
      explicit Held( CallReader& in ) { in.readInto( &value, sizeof( T ) ); }
      const T& get() const { return value; }
      T value;
   };
};

template <class P>
requires ByMutableRef<P>
struct Arg<P> {
   using T = std::remove_reference_t<P>;
   static_assert( std::is_trivially_copyable_v<T> );
   static void write( CallLog& log, const T& value ) { log.put( &value, sizeof( T ) ); }
   struct Held {
      explicit Held( CallReader& in ) { in.readInto( &value, sizeof( T ) ); }
      T& get() { return value; }
      T value;
   };
};

template <class P>
requires ByMutablePointer<P>
struct Arg<P> {
   using T = std::remove_pointer_t<P>;
   static_assert( std::is_trivially_copyable_v<T> );
   static void write( CallLog& log, const T* value ) {
      const bool present = value != nullptr;
      log.put( present );
      if ( present ) {
         log.put( value, sizeof( T ) );
      }
   }
   struct Held {
      explicit Held( CallReader& in ) : present( in.read<bool>() ) {
         if ( present ) {
            in.readInto( &value, sizeof( T ) );
         }
      }
      T* get() { return present ? &value : nullptr; }
      bool present;
      T value;
   };
};

template <>
struct Arg<const Vesper::String&> {
   static void write( CallLog& log, const Vesper::String& text ) {
      log.put( log.stringIs( text ) );
   }
   struct Held {
      explicit Held( CallReader& in ) : text( &in.log().string( in.read<U32>() ) ) {}
      const Vesper::String& get() const { return *text; }
      const Vesper::String* text;
   };
};

template <class R>
std::string answerText( const R& answer ) {
   if constexpr ( std::is_arithmetic_v<R> || std::is_enum_v<R> ) {
      return std::to_string( static_cast<long long>( answer ) );
   } else {
      (void)answer;
      return "another value";
   }
}

// How an answer is kept and compared.
template <class R>
struct Result {
   static_assert( std::is_trivially_copyable_v<R> && !std::is_pointer_v<R> );
   static constexpr std::size_t size = sizeof( R );
   static void store( CallLog& log, std::size_t at, const R& answer ) {
      log.putAt( at, &answer, sizeof( R ) );
   }
   static void check( CallReader& in, const R& answer, const char* call ) {
      R recorded;
      in.readInto( &recorded, sizeof( R ) );
      if ( !( recorded == answer ) ) {
         in.diverged( call, answerText( recorded ), answerText( answer ) );
      }
   }
};

template <>
struct Result<void> {
   static constexpr std::size_t size = 0;
};

// An error text: where it points is the SDK's business, not an answer to compare.
template <>
struct Result<const char*> {
   static constexpr std::size_t size = 0;
   static void store( CallLog&, std::size_t, const char* ) {}
   static void check( CallReader&, const char*, const char* ) {}
};

template <>
struct Result<Halyard::QualIdList> {
   static constexpr std::size_t size = sizeof( U32 );
   static void store( CallLog& log, std::size_t at, const Halyard::QualIdList& answer ) {
      const U32 index = log.qualIdListIs( answer );
      log.putAt( at, &index, sizeof index );
   }
   static void check( CallReader& in, const Halyard::QualIdList& answer, const char* call ) {
      const Halyard::QualIdList& recorded = in.log().qualIdList( in.read<U32>() );
      if ( recorded != answer ) {
         in.diverged( call, std::to_string( recorded.size() ) + " qualifier ids",
                      std::to_string( answer.size() ) + " qualifier ids" );
      }
   }
};

// Calls of entry managers name their manager in the record; the SDK and the group manager are
// one per target.
template <class C>
constexpr bool kManagerCall =
    !std::is_same_v<C, Shim::Sdk> && !std::is_same_v<C, Halyard::HalyardTcamGroupManager>;

template <class C>
C& objectOf( CallReader& in ) {
   if constexpr ( std::is_same_v<C, Shim::Sdk> ) {
      return *in.target().sdk;
   } else if constexpr ( std::is_same_v<C, Halyard::HalyardTcamGroupManager> ) {
      return *in.target().groupManager;
   } else {
      return static_cast<C&>( *in.target().managers[in.read<U16>()] );
   }
}

template <auto M, class C, class R, class... P>
struct OpImpl {
   template <class Object, class... A>
   static R record( CallLog& log, U16 manager, Object& object, A&&... args ) {
      const ReplayFn fn = &replay;
      log.put( fn );
      if constexpr ( kManagerCall<C> ) {
         log.put( manager );
      }
      ( Arg<P>::write( log, args ), ... );
      [[maybe_unused]] const std::size_t at = log.reserve( Result<R>::size );
      log.callDone();
      if constexpr ( std::is_void_v<R> ) {
         ( object.*M )( std::forward<A>( args )... );
      } else {
         R answer = ( object.*M )( std::forward<A>( args )... );
         Result<R>::store( log, at, answer );
         return answer;
      }
   }

   static void replay( CallReader& in ) {
      C& object = objectOf<C>( in );
      // Braced, so that the arguments are read in order.
      std::tuple<typename Arg<P>::Held...> held{ typename Arg<P>::Held( in )... };
      if constexpr ( std::is_void_v<R> ) {
         std::apply( [&]( auto&... h ) { ( object.*M )( h.get()... ); }, held );
      } else {
         const R answer =
             std::apply( [&]( auto&... h ) -> R { return ( object.*M )( h.get()... ); }, held );
         Result<R>::check( in, answer, __PRETTY_FUNCTION__ );
      }
   }
};

template <auto M, class C, class R, class... P>
OpImpl<M, C, R, P...> opOf( R ( C::* )( P... ) );
template <auto M, class C, class R, class... P>
OpImpl<M, C, R, P...> opOf( R ( C::* )( P... ) const );

// The record and replay of the member function M.
template <auto M>
using Op = decltype( opOf<M>( M ) );

}  // namespace Sim::record
