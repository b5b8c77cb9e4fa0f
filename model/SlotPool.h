#pragma once

// Storage for the model's most numerous objects, a schema's columns and
// tables: slots cut from large blocks in the order they are asked for.
// Making a column then costs a pointer bump instead of a general allocation
// (which, for objects that are made by the hundred thousand and not freed,
// runs its slow path every time), and the columns of a table lie side by
// side in memory for the walks over all of them that come later (reference
// resolution, output).
//
// From a thread's second block on, a block's pages are made a quarter block
// at a time, in one call each, as slots are cut, not one fault at a time as
// they are first used.
// A freed slot is not reused: a block goes back to the system once all its
// slots are freed and its thread has moved on to another block, so a model
// that is freed whole returns its memory as with the general allocator.
// Under AddressSanitizer each slot is an allocation of its own, so that the
// sanitizer still sees every object.

#include <cstddef>
#include <new>

namespace SchemaModel::detail {

/// Slots are aligned for objects of up to this alignment: the model's
/// classes hold pointers and strings, and a 16-byte step would add eight
/// bytes to every column.
constexpr std::size_t slotAlignment = alignof(void *);

/// Room for an object of `size` bytes (slotAlignment-aligned), from the
/// calling thread's current block. Throws std::bad_alloc when no block can
/// be had.
void *allocateSlot(std::size_t size);

/// Gives back a slot from allocateSlot, from any thread.
void releaseSlot(void *slot) noexcept;

/// A class's operator new and delete: an object of the class's own size
/// gets a slot, one of a subclass of another size the general allocator.
/// (A class's alignment must not exceed slotAlignment; its operator new
/// asserts it.)
inline void *allocateSlotFor(std::size_t size, std::size_t classSize)
{
    return size == classSize ? allocateSlot(size) : ::operator new(size);
}
inline void releaseSlotFor(void *object, std::size_t size, std::size_t classSize) noexcept
{
    if (size == classSize)
        releaseSlot(object);
    else
        ::operator delete(object);
}

/// How many blocks are held now (for the tests).
std::size_t slotBlockCount() noexcept;

} // namespace SchemaModel::detail
