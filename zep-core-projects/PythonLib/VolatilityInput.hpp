// The volatility of an option as a Python user gives it: one number, the same at every strike
// and expiry, or a surface (zep.FXVolSurface, zep.MFXVolSurface) read at the option's strike
// and expiry. None arrives as no source, which the option refuses with its own message.
#pragma once

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include "lum-closed-form/VolatilitySource.hpp"

namespace zep::python {

class VolatilityInput {
public:
    VolatilityInput(double flat) : m_source(boost::make_shared<zep::FlatVolatility>(flat)) {}
    VolatilityInput(boost::shared_ptr<const zep::VolatilitySource> source)
        : m_source(std::move(source)) {}

    const boost::shared_ptr<const zep::VolatilitySource>& Source() const { return m_source; }

private:
    boost::shared_ptr<const zep::VolatilitySource> m_source;
};

}  // namespace zep::python
