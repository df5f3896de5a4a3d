#include "lum-monte-carlo/script/Domain.hpp"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

using Piece = Domain::Piece;

double Clamp(double value) {
    if (std::isnan(value)) return value;
    return std::clamp(value, -Domain::kUnbounded, Domain::kUnbounded);
}

bool IsPointPiece(const Piece& piece) { return piece.hi - piece.lo < Domain::kTolerance; }

// The interval spanned by candidate values (corners of a monotone operation); NaN anywhere
// means the operation is undefined somewhere inside and nothing narrower can be said.
Piece Span(std::initializer_list<double> values) {
    Piece span{Domain::kUnbounded, -Domain::kUnbounded};
    for (const double value : values) {
        if (std::isnan(value)) return {-Domain::kUnbounded, Domain::kUnbounded};
        span.lo = std::min(span.lo, Clamp(value));
        span.hi = std::max(span.hi, Clamp(value));
    }
    return span;
}

// Sorts pieces, merges those that touch, and falls back to the hull when too many remain.
std::vector<Piece> Normalised(std::vector<Piece> pieces) {
    for (auto& piece : pieces) {
        if (std::isnan(piece.lo) || std::isnan(piece.hi)) piece = {-Domain::kUnbounded, Domain::kUnbounded};
        piece = {Clamp(piece.lo), Clamp(piece.hi)};
    }
    std::sort(pieces.begin(), pieces.end(),
              [](const Piece& a, const Piece& b) { return a.lo < b.lo || (a.lo == b.lo && a.hi < b.hi); });
    std::vector<Piece> merged;
    merged.reserve(pieces.size());
    for (const auto& piece : pieces) {
        if (!merged.empty() && piece.lo - merged.back().hi < Domain::kTolerance)
            merged.back().hi = std::max(merged.back().hi, piece.hi);
        else
            merged.push_back(piece);
    }
    if (merged.size() > Domain::kMaxPieces) merged = {{merged.front().lo, merged.back().hi}};
    return merged;
}

template <class Operation>
std::vector<Piece> Pairwise(const Domain& a, const Domain& b, Operation operation) {
    std::vector<Piece> pieces;
    pieces.reserve(a.Pieces().size() * b.Pieces().size());
    for (const auto& x : a.Pieces())
        for (const auto& y : b.Pieces()) pieces.push_back(operation(x, y));
    return pieces;
}

}  // namespace

Domain::Domain(std::vector<Piece> pieces) : m_pieces(Normalised(std::move(pieces))) {}

Domain Domain::Point(double value) {
    if (!std::isfinite(value)) return Unbounded();
    return Domain({{value, value}});
}

Domain Domain::Interval(double lo, double hi) {
    if (lo > hi) ZEP_FAIL("Inconsistent bounds");
    return Domain({{lo, hi}});
}

bool Domain::IsDiscrete() const { return std::all_of(m_pieces.begin(), m_pieces.end(), IsPointPiece); }

bool Domain::IsPoint(double value) const {
    return m_pieces.size() == 1 && IsPointPiece(m_pieces[0]) &&
           std::abs(m_pieces[0].lo - value) < kTolerance;
}

Domain Domain::Union(const Domain& other) const {
    std::vector<Piece> pieces = m_pieces;
    pieces.insert(pieces.end(), other.m_pieces.begin(), other.m_pieces.end());
    return Domain(std::move(pieces));
}

Domain Domain::Hull() const { return Domain({{Lowest(), Highest()}}); }

Domain Domain::operator-() const {
    std::vector<Piece> pieces;
    for (const auto& piece : m_pieces) pieces.push_back({-piece.hi, -piece.lo});
    return Domain(std::move(pieces));
}

Domain operator+(const Domain& a, const Domain& b) {
    return Domain(Pairwise(a, b, [](Piece x, Piece y) { return Piece{x.lo + y.lo, x.hi + y.hi}; }));
}

Domain operator-(const Domain& a, const Domain& b) {
    return Domain(Pairwise(a, b, [](Piece x, Piece y) { return Piece{x.lo - y.hi, x.hi - y.lo}; }));
}

Domain operator*(const Domain& a, const Domain& b) {
    return Domain(Pairwise(a, b, [](Piece x, Piece y) {
        return Span({x.lo * y.lo, x.lo * y.hi, x.hi * y.lo, x.hi * y.hi});
    }));
}

Domain operator/(const Domain& a, const Domain& b) {
    if (b.IsPoint(0.0)) ZEP_FAIL("Division by {0}");
    return Domain(Pairwise(a, b, [](Piece x, Piece y) {
        if (y.lo <= 0.0 && y.hi >= 0.0) return Piece{-Domain::kUnbounded, Domain::kUnbounded};
        return Span({x.lo / y.lo, x.lo / y.hi, x.hi / y.lo, x.hi / y.hi});
    }));
}

// On a positive base the power is monotone in each argument, so the corners bound it; a base
// that may be negative allows anything.
Domain Pow(const Domain& base, const Domain& exponent) {
    return Domain(Pairwise(base, exponent, [](Piece x, Piece y) {
        if (IsPointPiece(x) && IsPointPiece(y)) return Span({std::pow(x.lo, y.lo)});
        if (x.lo < 0.0) return Piece{-Domain::kUnbounded, Domain::kUnbounded};
        return Span({std::pow(x.lo, y.lo), std::pow(x.lo, y.hi), std::pow(x.hi, y.lo),
                     std::pow(x.hi, y.hi)});
    }));
}

namespace {

// Log and square root are only defined on the non-negative part of a domain; nothing left
// means the bounds contradict each other.
template <class Function>
Domain OnNonNegativePart(const Domain& a, Function function) {
    std::vector<Domain> parts;
    for (const auto& piece : a.Pieces()) {
        if (piece.hi < 0.0) continue;
        const double lo = std::max(piece.lo, 0.0);
        if (IsPointPiece(piece)) parts.push_back(Domain::Point(function(lo)));
        else parts.push_back(Domain::Interval(Clamp(function(lo)), Clamp(function(piece.hi))));
    }
    if (parts.empty()) return Domain::Interval(std::max(a.Lowest(), 0.0), a.Highest());
    Domain result = parts.front();
    for (std::size_t i = 1; i < parts.size(); ++i) result = result.Union(parts[i]);
    return result;
}

}  // namespace

Domain Log(const Domain& a) { return OnNonNegativePart(a, [](double x) { return std::log(x); }); }
Domain Sqrt(const Domain& a) { return OnNonNegativePart(a, [](double x) { return std::sqrt(x); }); }

Domain Least(const Domain& a, const Domain& b) {
    return Domain(Pairwise(a, b, [](Piece x, Piece y) {
        return Piece{std::min(x.lo, y.lo), std::min(x.hi, y.hi)};
    }));
}

Domain Greatest(const Domain& a, const Domain& b) {
    return Domain(Pairwise(a, b, [](Piece x, Piece y) {
        return Piece{std::max(x.lo, y.lo), std::max(x.hi, y.hi)};
    }));
}

}  // namespace zep
