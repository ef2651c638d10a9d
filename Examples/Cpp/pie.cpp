// A pie from a vector of names and amounts.
#include <zelkon/charts.h>

#include <vector>

int main() {
  const std::vector<zelkon::plot::Slice> spending{{"Rent", 1200}, {"Groceries", 412.5}, {"Travel", 180}};
  zelkon::plot::save("pie.png", zelkon::plot::pie(spending));
}
