// SPDX-License-Identifier: Apache-2.0
#include "bundle/descriptor/PluginProperties.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace descriptor {
namespace {

enum class Order { kBig, kLittle };

// Appends numbers and four-character codes in one byte order.
class Writer {
public:
    explicit Writer(Order byteOrder) : order_(byteOrder) {}

    void u8(std::uint8_t value) { bytes_.push_back(value); }
    void u16(std::uint16_t value) { number(value, 2); }
    void u32(std::uint32_t value) { number(value, 4); }
    void code(std::string_view fourCharacters) {
        std::uint32_t value = 0;
        for (const char c : fourCharacters) value = value << 8 | static_cast<std::uint8_t>(c);
        u32(value);
    }
    void append(const Bytes& more) { bytes_.insert(bytes_.end(), more.begin(), more.end()); }
    void zeros(std::size_t count) { bytes_.insert(bytes_.end(), count, 0); }

    Bytes take() { return std::move(bytes_); }
    std::size_t size() const { return bytes_.size(); }

private:
    void number(std::uint32_t value, int width) {
        for (int i = 0; i < width; ++i) {
            const int shift = 8 * (order_ == Order::kBig ? width - 1 - i : i);
            u8(static_cast<std::uint8_t>(value >> shift));
        }
    }

    Order order_;
    Bytes bytes_;
};

// Zero bytes that bring `size` to a multiple of 4.
std::size_t padding(std::size_t size) {
    return (4 - size % 4) % 4;
}

Bytes pascalString(const std::string& text) {
    Bytes bytes(1 + text.size());
    bytes[0] = static_cast<std::uint8_t>(text.size());
    std::copy(text.begin(), text.end(), bytes.begin() + 1);
    return bytes;
}

Bytes cString(const std::string& text) {
    Bytes bytes(text.size() + 1);
    std::copy(text.begin(), text.end(), bytes.begin());
    return bytes;
}

// The list, property by property. On Windows a property's length counts its padding.
class PropertyList {
public:
    explicit PropertyList(Order byteOrder) : order_(byteOrder), properties_(byteOrder) {}

    void raw(std::string_view key, Bytes data) {
        const std::size_t pad = padding(data.size());
        if (order_ == Order::kLittle) data.resize(data.size() + pad);
        properties_.code("8BIM");
        properties_.code(key);
        properties_.u32(0);
        properties_.u32(static_cast<std::uint32_t>(data.size()));
        properties_.append(data);
        properties_.zeros(padding(data.size()));
        ++count_;
    }
    void number(std::string_view key, std::uint32_t value) {
        Writer writer(order_);
        writer.u32(value);
        raw(key, writer.take());
    }
    void shorts(std::string_view key, std::uint16_t first, std::uint16_t second) {
        Writer writer(order_);
        writer.u16(first);
        writer.u16(second);
        raw(key, writer.take());
    }
    void code(std::string_view key, std::string_view value) {
        Writer writer(order_);
        writer.code(value);
        raw(key, writer.take());
    }

    Bytes take() {
        Writer list(order_);
        if (order_ == Order::kLittle) list.append({1, 0});
        list.u32(0);
        list.u32(count_);
        list.append(properties_.take());
        return list.take();
    }

private:
    Order order_;
    Writer properties_;
    std::uint32_t count_ = 0;
};

void addEntryPoints(PropertyList& list, Order order, const std::string& entryPoint) {
    if (order == Order::kLittle) {
        list.raw("8664", cString(entryPoint));
        return;
    }
    list.raw("mi64", pascalString(entryPoint));
    list.raw("ma64", pascalString(entryPoint));
}

// The information word has 16 bits in one form and 32 in the other.
void addInformation(PropertyList& list, Order order) {
    if (order == Order::kLittle) {
        list.number("eINF", 0);
    } else {
        list.raw("eINF", {0, 0});
    }
}

Bytes propertyList(const Description& d, Order order) {
    check(d);
    PropertyList list(order);
    list.code("kind", "eFKT");
    list.raw("name", pascalString(d.name));
    list.raw("catg", pascalString(d.category));
    addEntryPoints(list, order, d.entryPoint);
    list.shorts("ePVR", 2, 0);
    list.shorts("eSVR", d.interfaceMajor, d.interfaceMinor);
    list.number("eVER", d.effectVersion);
    addInformation(list, order);
    list.number("eGLO", d.outFlags);
    list.number("eGL2", d.outFlags2);
    list.raw("eMNA", pascalString(d.matchName));
    list.number("aeFL", 0);
    return list.take();
}

constexpr std::uint32_t kDataOffset = 256;
constexpr std::uint16_t kTypeListOffset = 28;  // from the map's start
constexpr std::uint16_t kMapSize = 50;         // with one type and one resource

void appendHead(Writer& writer, std::uint32_t dataSize) {
    writer.u32(kDataOffset);
    writer.u32(kDataOffset + dataSize);
    writer.u32(dataSize);
    writer.u32(kMapSize);
}

void appendMap(Writer& writer, std::uint32_t dataSize) {
    appendHead(writer, dataSize);
    writer.zeros(4 + 2 + 2);  // two reserved words and the file's attributes
    writer.u16(kTypeListOffset);
    writer.u16(kMapSize);  // the list of names, which is empty
    writer.u16(0);         // types, less one
    writer.code("PiPL");
    writer.u16(0);   // resources of the type, less one
    writer.u16(10);  // from the type list to the type's references
    writer.u16(kResourceId);
    writer.u16(0xFFFF);  // no name
    writer.u32(0);       // attributes, and the place in the data
    writer.u32(0);
}

}  // namespace

Bytes macPropertyList(const Description& description) {
    return propertyList(description, Order::kBig);
}

Bytes windowsPropertyList(const Description& description) {
    return propertyList(description, Order::kLittle);
}

Bytes macResourceFile(const Description& description) {
    const Bytes list = macPropertyList(description);
    const auto dataSize = static_cast<std::uint32_t>(4 + list.size());
    Writer file(Order::kBig);
    appendHead(file, dataSize);
    file.zeros(kDataOffset - file.size());
    file.u32(static_cast<std::uint32_t>(list.size()));
    file.append(list);
    appendMap(file, dataSize);
    return file.take();
}

}  // namespace descriptor
