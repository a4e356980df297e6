// The same component from another engine, which passes its arrays as objects and takes no results by reference.
var main = new ActiveXObject("Vorquill21.Main");
Expect("an object", main.LibMathUtils, "Object CMathUtils");
Expect("a number", main.LibTrigonometry.Degrees(1), "Double 114.59155902616476");
Expect("a whole number", main.LibMathUtils.DWordMake(7740, 339), "Long 507248979");
Expect("a text", main.LibString.ReplaceMulti("a  b", " ", ","), "String 'a,b'");
Expect("a boolean", main.LibMathUtils.NumbersAreEqual(10, 10.004, 2), "Boolean True");
Expect("an array", main.LibString.Split5("x y"), "Variant(0 to 1) String 'x', String 'y'");
Expect("an array that is passed on", main.LibStatistics.ArithmeticMean(ArrayOf("Double(0 to 2)",
  main.LibString.Split5("3 9 9"))), "Long 7");
var importer = new ActiveXObject("Vorquill21.CImportColumnData");
importer.HeaderRow = 3;
Expect("a property", importer.HeaderRow, "Long 3");
Expect("a method without arguments", importer.Import(), "Boolean False");
try {
  main.LibLog.AddEntry("entry", 1);
  Expect("no error", true, "Boolean False");
} catch (error) {
  Expect("an error", error.description, "String 'Log not initialised'");
  Expect("its number", error.number & 0xFFFF, "Long 1000");
}

// An object of the script's own finds the intervals of tables.
var interpolate = new ActiveXObject("Vorquill21.CInterpolate");
var firstInterval = {
  calls: "",
  ArrayLocate: function (nodes, x, index) {
    this.calls += Shown(nodes) + " at " + Shown(x);
    return true;
  }
};
interpolate.moUtils = firstInterval;
Expect("its place", interpolate.moUtils, "Object CMathUtils");
Expect("a table", interpolate.OneDLinearInterpolate(0, ArrayOf("Double(0 to 2)", main.LibString.Split5("0 1 2")),
  ArrayOf("Double(0 to 2)", main.LibString.Split5("0 1 10")), 2), "Long 2");
Expect("what it was asked", firstInterval.calls, "String 'Double(0 to 2) 0, 1, 2 at Long 2'");
