// The state equations of the ladder and their eigen-decomposition.
//
// Unknowns: the node voltages and the inductor currents (currents times the
// source resistance R0, time in units of 1/scale, so that a normalised
// design has numbers near 1). Nodal analysis gives the descriptor form
//   E x' = A x + b u,   E = diag(node capacitances, inductances),
//   A = -[G  N; -N' R]  (G conductances, R inductor losses, N incidence),
// with u the source voltage, applied as the current u / Rsource into the
// input node.
//
// E is singular where the ladder stores no energy in some direction: a node
// reached by no capacitor, and the loops of capacitors of an elliptic ladder
// (a shunt C, the tank's C, the next shunt C) or the common voltage of a
// chain of series capacitors, which make the capacitance matrix singular
// without a zero row. E is symmetric and positive semi-definite, so its
// eigenvectors split the unknowns into stored-energy directions and
// algebraic ones; the algebraic ones are solved for (a Schur complement), so
// every loop of capacitors and every cutset of inductors ends up with as
// many states as it has degrees of freedom, whatever the kind table builds.
//
// Conditioning: the remaining states are scaled by the square root of their
// stored-energy eigenvalue, so that |state|^2 is twice the stored energy.
// In these coordinates the state matrix is a skew-symmetric part (the
// lossless exchange between inductors and capacitors) plus a symmetric
// negative semi-definite part (the terminations and the losses), so it is
// close to a normal matrix: its eigenvectors stay nearly orthogonal even
// where the poles crowd around the centre of a narrow bandpass. The poles
// come from the eigenvalues and the residues from the eigenvectors; no
// polynomial coefficient is ever formed, since the roots of a polynomial of
// clustered roots move by far more than its coefficients' rounding.

#include "timedomain/modes.h"

#include <Eigen/Dense>
#include <Eigen/Eigenvalues>
#include <cmath>

namespace drenik {
namespace {

using Eigen::MatrixXd;
using Eigen::VectorXd;

// Below this fraction of the largest stored-energy eigenvalue a direction
// stores no energy (rounding of the capacitance sums is far below it).
constexpr double kNoEnergy = 1e-12;
// A matrix of eigenvectors conditioned worse than this marks coinciding
// poles, whose response is not a sum of plain exponentials.
constexpr double kMinRcond = 1e-13;
// Conductances (times R0) below this are none: an algebraic unknown that
// only inductors reach (the middle node of series L, shunt L, series L) is
// held by the cutset's constraint instead.
constexpr double kNoConductance = 1e-13;

}  // namespace

std::complex<double> LadderModes::At(std::complex<double> s) const {
  std::complex<double> h = direct;
  for (size_t k = 0; k < pole.size(); ++k) h += residue[k] / (s - pole[k]);
  return h;
}

LadderModes ModesOf(const LadderNetwork& net, double scale) {
  LadderModes out;
  if (!net.fault.empty()) {
    out.fault = net.fault;
    return out;
  }
  if (!(scale > 0) || !std::isfinite(scale)) {
    out.fault = "Cannot work out the time response: no frequency scale.";
    return out;
  }
  const double r0 = net.rsource;
  int inductors = 0;
  for (const NetworkPart& p : net.parts) inductors += p.kind == PartKind::L;
  const int nv = net.nodes, n = nv + inductors;

  MatrixXd E = MatrixXd::Zero(n, n), A = MatrixXd::Zero(n, n);
  VectorXd b = VectorXd::Zero(n), c = VectorXd::Zero(n);
  // Stamps of a symmetric two-terminal value between nodes a and b.
  auto stamp = [&](MatrixXd& m, int a, int bnode, double v) {
    if (a) m(a - 1, a - 1) += v;
    if (bnode) m(bnode - 1, bnode - 1) += v;
    if (a && bnode) m(a - 1, bnode - 1) -= v, m(bnode - 1, a - 1) -= v;
  };
  stamp(A, net.input, 0, -r0 / net.rsource);
  stamp(A, net.output, 0, -r0 / net.rload);
  b(net.input - 1) = 1;  // u / Rsource, in units of 1 / R0
  c(net.output - 1) = 2 * std::sqrt(net.rsource / net.rload);
  int li = nv;
  for (const NetworkPart& p : net.parts) {
    switch (p.kind) {
      case PartKind::R:
        stamp(A, p.a, p.b, -r0 / p.value);
        break;
      case PartKind::C:
        stamp(E, p.a, p.b, scale * r0 * p.value);
        break;
      case PartKind::L:
        E(li, li) = scale * p.value / r0;
        A(li, li) = -p.rser / r0;
        if (p.a) A(p.a - 1, li) -= 1, A(li, p.a - 1) += 1;
        if (p.b) A(p.b - 1, li) += 1, A(li, p.b - 1) -= 1;
        ++li;
        break;
    }
  }
  if (!A.allFinite() || !E.allFinite()) {
    out.fault = "Cannot work out the time response: a part value is out of range.";
    return out;
  }

  // Stored-energy and algebraic directions.
  Eigen::SelfAdjointEigenSolver<MatrixXd> energy(E);
  const VectorXd lambda = energy.eigenvalues();  // ascending
  const double top = lambda.size() ? lambda(n - 1) : 0;
  int alg = 0;
  while (alg < n && !(lambda(alg) > kNoEnergy * top)) ++alg;
  const int dyn = n - alg;
  const MatrixXd& Q = energy.eigenvectors();
  const MatrixXd At = Q.transpose() * A * Q;
  const VectorXd bt = Q.transpose() * b, ct = Q.transpose() * c;

  // Algebraic unknowns: z2 = Vr eta + V0 mu with A22 = U S V'. The part
  // eta that A22 reaches is solved for; mu (the node voltages of inductor
  // cutsets) is whatever keeps the cutset's currents summing to 0, the
  // constraint U0' (A21 z1) = 0 on the stored states.
  MatrixXd M = At.bottomRightCorner(dyn, dyn);
  VectorXd bd = bt.tail(dyn), cd = ct.tail(dyn);
  const MatrixXd a21 = At.topRightCorner(alg, dyn);  // algebraic rows, stored columns
  const MatrixXd a12 = At.bottomLeftCorner(dyn, alg);
  MatrixXd force(dyn, 0), cutset(0, dyn);  // mu's entry into the states, the constraint
  VectorXd cmu(0);                         // mu's part of the output
  if (alg > 0) {
    const Eigen::JacobiSVD<MatrixXd> svd(At.topLeftCorner(alg, alg),
                                         Eigen::ComputeFullU | Eigen::ComputeFullV);
    const VectorXd& sv = svd.singularValues();
    int rank = 0;
    while (rank < alg && sv(rank) > kNoConductance * std::max(1.0, sv(0))) ++rank;
    const MatrixXd Ur = svd.matrixU().leftCols(rank), Vr = svd.matrixV().leftCols(rank);
    const MatrixXd U0 = svd.matrixU().rightCols(alg - rank),
                   V0 = svd.matrixV().rightCols(alg - rank);
    const VectorXd inv = sv.head(rank).cwiseInverse();
    // eta = -S^-1 Ur' (A21 z1 + b2 u)
    const MatrixXd x21 = Vr * inv.asDiagonal() * (Ur.transpose() * a21);
    const VectorXd xb = Vr * inv.asDiagonal() * (Ur.transpose() * bt.head(alg));
    if ((U0.transpose() * bt.head(alg)).norm() > 1e-9) {
      out.fault = "Cannot work out the time response: the source drives a loop of inductors.";
      return out;
    }
    M -= a12 * x21;
    bd -= a12 * xb;
    cd -= x21.transpose() * ct.head(alg);
    out.direct = -ct.head(alg).dot(xb);
    force = a12 * V0;
    cutset = U0.transpose() * a21;
    cmu = V0.transpose() * ct.head(alg);
  }
  if (dyn == 0) return out;
  const VectorXd root = lambda.tail(dyn).cwiseSqrt().cwiseInverse();
  M = root.asDiagonal() * M * root.asDiagonal();
  bd = root.cwiseProduct(bd);
  cd = root.cwiseProduct(cd);
  if (cutset.rows() > 0) {
    // w' = M w + F mu + b u with K w = 0 at all times: mu = -X (M w + b u),
    // X = (K F)^-1 K, so w' = P (M w + b u), P = I - F X, on the states
    // that satisfy the constraint (an orthonormal basis W of null(K)).
    force = root.asDiagonal() * force;
    cutset = cutset * root.asDiagonal();
    const Eigen::FullPivLU<MatrixXd> kf(cutset * force);
    if (!kf.isInvertible()) {
      out.fault = "Cannot work out the time response: a node of the ladder is left floating.";
      return out;
    }
    const MatrixXd X = kf.solve(cutset);
    const MatrixXd P = MatrixXd::Identity(dyn, dyn) - force * X;
    const Eigen::HouseholderQR<MatrixXd> qr(cutset.transpose());
    const int k = static_cast<int>(cutset.rows());
    const MatrixXd W = (qr.householderQ() * MatrixXd::Identity(dyn, dyn)).rightCols(dyn - k);
    const VectorXd cw = W.transpose() * cd - (cmu.transpose() * X * M * W).transpose();
    out.direct -= cmu.dot(X * bd);
    const VectorXd bw = W.transpose() * (P * bd);
    M = W.transpose() * P * M * W;
    bd = bw;
    cd = cw;
  }
  const int states = static_cast<int>(M.rows());
  if (states == 0) return out;

  if (!M.allFinite() || !bd.allFinite() || !cd.allFinite()) {
    out.fault = "Cannot work out the time response: a part value is out of range.";
    return out;
  }
  Eigen::EigenSolver<MatrixXd> eig(M);
  if (eig.info() != Eigen::Success) {
    out.fault = "Cannot work out the time response: the poles of the ladder were not found.";
    return out;
  }
  const Eigen::MatrixXcd V = eig.eigenvectors();
  const Eigen::PartialPivLU<Eigen::MatrixXcd> vlu(V);
  if (!(vlu.rcond() > kMinRcond)) {
    out.fault = "Cannot work out the time response: the ladder has coinciding poles.";
    return out;
  }
  const Eigen::VectorXcd g = vlu.solve(bd.cast<std::complex<double>>());
  const Eigen::VectorXcd cv = V.transpose() * cd.cast<std::complex<double>>();
  for (int k = 0; k < states; ++k) {
    out.pole.push_back(scale * eig.eigenvalues()(k));
    out.residue.push_back(scale * cv(k) * g(k));
  }
  return out;
}

}  // namespace drenik
