// The set of values a script expression can take: a sorted union of closed intervals, where an
// interval of zero width is a single point. A domain of single points only is discrete (counts,
// flags, fixed coupons); a comparison over it needs no smoothing width.
#pragma once

#include <vector>

namespace zep {

class Domain {
public:
    struct Piece {
        double lo;
        double hi;
    };

    static constexpr double kUnbounded = 1e12;   // the whole real line, as far as scripts go
    static constexpr double kTolerance = 1e-12;  // bounds closer than this are the same
    static constexpr std::size_t kMaxPieces = 64;  // beyond this a domain becomes its hull

    static Domain Point(double value);
    // Raises "Inconsistent bounds" when lo exceeds hi.
    static Domain Interval(double lo, double hi);
    static Domain Unbounded() { return Interval(-kUnbounded, kUnbounded); }

    const std::vector<Piece>& Pieces() const { return m_pieces; }
    bool IsDiscrete() const;
    bool IsPoint(double value) const;
    double Lowest() const { return m_pieces.front().lo; }
    double Highest() const { return m_pieces.back().hi; }

    Domain Union(const Domain& other) const;
    Domain Hull() const;

    Domain operator-() const;
    friend Domain operator+(const Domain& a, const Domain& b);
    friend Domain operator-(const Domain& a, const Domain& b);
    friend Domain operator*(const Domain& a, const Domain& b);
    // Raises "Division by {0}" when the divisor is the single point zero.
    friend Domain operator/(const Domain& a, const Domain& b);
    friend Domain Pow(const Domain& base, const Domain& exponent);
    friend Domain Log(const Domain& a);
    friend Domain Sqrt(const Domain& a);
    friend Domain Least(const Domain& a, const Domain& b);
    friend Domain Greatest(const Domain& a, const Domain& b);

private:
    explicit Domain(std::vector<Piece> pieces);

    std::vector<Piece> m_pieces;  // sorted, disjoint, never empty
};

}  // namespace zep
