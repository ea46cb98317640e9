#pragma once

#include "PropertyValue.h"

#include <random>

// Random property-list trees: small, but with the sizes and values where encodings change.
class RandomProperty
{
public:
    explicit RandomProperty(unsigned seed) : m_random(seed) {}

    PropertyValue value(int depth = 4);

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }
    QString text();
    QByteArray data();
    PropertyValue integer();
    double real();
    PropertyValue container(int depth);

    std::mt19937_64 m_random;
};
