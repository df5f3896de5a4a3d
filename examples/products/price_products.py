"""Prices one structured product of each family from its term sheet in examples/products/: the
script its terms generate, price with standard error, present value and basic Greeks; writes
each pricing report to reports/products/."""
import os

import zep

HERE = os.path.dirname(os.path.abspath(__file__))
PRODUCTS = [("autocall.yaml", "equity_market.yaml"), ("snowball.yaml", "equity_market.yaml"),
            ("tarf.yaml", "fx_market.yaml"), ("asian.yaml", "equity_market.yaml")]

for definition, market in PRODUCTS:
    product = zep.load_product(os.path.join(HERE, definition), zep.load_market(os.path.join(HERE, market)))
    print(f"{product.ProductType()} ({definition})")
    print(f"  price {product.Price():.6f} +- {product.PriceStandardError():.6f} per unit, PV {product.PV():,.2f}")
    print("  greeks " + ", ".join(f"{name} {value:.6g}" for name, value in sorted(product.Greeks().items())))
    report = product.WriteReport(os.path.join("reports", "products"), os.path.splitext(definition)[0])
    print(f"  report {report}")
