// Owned collections: the glue behind the accessors of a collection of
// counted objects that its owner creates.
//
// For an attribute `x` held in an OwnedCollection, the owner's accessors are
//   x(key)                 find(key)          the member, or null
//   xIs(key, ctorArgs...)  findOrCreate(...)  find or build; see below
//   xDel(key)              del(key)           the removed member, or null
//   xDelAll()              delAll(onEach)     one by one, in walk order
//   xHas(key)              has(key)
// and xNotify(key) / the change notifications stay with the owner, which
// knows its notifiees.
//
// findOrCreate builds T( key, ctorArgs... ) and turns its notifications on.
// When the member stands already, each constructor parameter it declares in
// `static auto ctorParams()` (a tuple of ctorParam( "_name", &T::getter ), in
// the order of ctorArgs) is compared with the argument given; the first that
// differs raises NameInUseException with nameInUseText().
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "platform/vesper/Exception.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/ValueText.h"

namespace Vesper {

// "Reinstantiating the pointer interface where constructor parameter
// attribute <attr> has a different value of <new> than the current value of
// <old> not allowed".
std::string nameInUseText( std::string_view attrName, std::string_view newValue,
                           std::string_view oldValue );

// One constructor parameter of a member class: its attribute name as the
// message shows it ("_aclHelper") and how to read the stored value.
template <class Getter>
struct CtorParam {
   const char* name;
   Getter get;
};
template <class Getter>
constexpr CtorParam<Getter> ctorParam( const char* name, Getter get ) {
   return { name, get };
}

template <class T>
concept DeclaresCtorParams = requires {
   T::ctorParams();
};

// Raises NameInUseException if `member` was built with other arguments.
template <class T, class... Args>
void checkCtorArgs( const T& member, const Args&... args ) {
   if constexpr ( DeclaresCtorParams<T> ) {
      const auto params = T::ctorParams();
      static_assert( std::tuple_size_v<decltype( params )> == sizeof...( Args ),
                     "ctorParams() must list every constructor argument after the key" );
      std::apply(
          [&]( const auto&... param ) {
             auto checkOne = [&]( const auto& p, const auto& arg ) {
                const auto& current = std::invoke( p.get, member );
                if ( !( current == arg ) ) {
                   throw NameInUseException(
                       nameInUseText( p.name, valueText( arg ), valueText( current ) ) );
                }
             };
             ( checkOne( param, args ), ... );
          },
          params );
   }
}

template <class Key, class T, class Hasher = KeyHash>
class OwnedCollection {
 public:
   using Map = HashMap2018<Key, Ptr<T>, Hasher>;

   Ptr<T> find( const Key& key ) const {
      const Ptr<T>* member = members_.find( key );
      return member ? *member : nullptr;
   }
   bool has( const Key& key ) const { return members_.has( key ); }
   size_t size() const { return members_.size(); }
   bool empty() const { return members_.empty(); }

   struct FindOrCreate {
      Ptr<T> member;
      bool created;
   };
   template <class... Args>
   FindOrCreate findOrCreate( const Key& key, Args&&... args ) {
      if ( Ptr<T> present = find( key ) ) {
         checkCtorArgs( *present, args... );
         return { present, false };
      }
      Ptr<T> member( new T( key, std::forward<Args>( args )... ) );
      member->hasNotificationActiveIs( true );
      members_.set( key, member );
      return { member, true };
   }

   // Adds or replaces a member made elsewhere; true when the collection changed.
   bool set( const Key& key, Ptr<T> member ) { return members_.set( key, std::move( member ) ); }

   Ptr<T> del( const Key& key ) {
      auto removed = members_.del( key );
      return removed ? std::move( *removed ) : nullptr;
   }

   // Removes every member, one by one in walk order, calling onEach( key,
   // member ) after each removal.
   template <class OnEach>
   void delAll( OnEach&& onEach ) {
      for ( auto it = members_.iterator(); auto* node = it.currNodeNonStale(); it.advance() ) {
         const Key key = node->key();
         Ptr<T> member = del( key );
         onEach( key, member );
      }
   }
   void delAll() {
      delAll( []( const Key&, const Ptr<T>& ) {} );
   }

   const Map& members() const { return members_; }
   auto begin() const { return members_.begin(); }
   auto end() const { return members_.end(); }

 private:
   Map members_;
};

}  // namespace Vesper
